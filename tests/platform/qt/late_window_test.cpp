// A window may live a moment longer than who has opened it.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QPointer>
#include <algorithm>
#include <new>

#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_session.h"
#include "platform/qt/qt_windows.h"

namespace {

using platform::qt::QtWindows;

/// A place for an object that nobody may look at once it is gone: who does ends this process.
class GuardedPlace {
  public:
    GuardedPlace()
        : size_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))),
          memory_(
              ::mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {}
    ~GuardedPlace() { ::munmap(memory_, size_); }
    GuardedPlace(const GuardedPlace&) = delete;
    GuardedPlace& operator=(const GuardedPlace&) = delete;

    [[nodiscard]] void* get() const { return memory_; }
    [[nodiscard]] bool close() { return ::mprotect(memory_, size_, PROT_NONE) == 0; }

  private:
    std::size_t size_;
    void* memory_;
};

std::unique_ptr<QWidget> makeWindow(const std::string& sceneId) {
    auto window = std::make_unique<QWidget>();
    window->setObjectName(QString::fromStdString(sceneId));
    window->setMinimumSize(360, 240);
    return window;
}

QWidget* widgetNamed(const QString& name) {
    const QWidgetList widgets = QApplication::topLevelWidgets();
    const auto found = std::ranges::find_if(
        widgets, [&name](const QWidget* widget) { return widget->objectName() == name; });
    return found == widgets.end() ? nullptr : *found;
}

TEST(LateWindow, calls_nobody_who_has_gone) {
    qt_tests::QtSession::shared();
    app::NotificationCenter center;
    platform::qt::QtMainQueue queue;
    bool exists = true;
    QtWindows::WindowManager windowManager;
    windowManager.exists = [&exists](WId) { return exists; };
    windowManager.setLevel = [](WId, app::WindowLevel) {};
    GuardedPlace place;
    static_assert(sizeof(QtWindows) <= 4096);
    auto* const windows = new (place.get()) QtWindows(center, queue, makeWindow, windowManager, {});
    windows->openScene("late");
    windows->setLevel(windows->windows().front().handle, app::WindowLevel::floating);
    const QPointer<QWidget> window = widgetNamed("late");
    ASSERT_FALSE(window.isNull());
    ASSERT_FALSE(window->windowHandle()->isExposed()) << "Three wait for that.";
    // Destroyed by another program, it seems: it is given up, and ends in a later turn.
    exists = false;
    windows->activate();
    windows->~QtWindows();
    ASSERT_TRUE(place.close());
    ASSERT_FALSE(window.isNull());
    EXPECT_TRUE(qt_tests::runUntil([&] { return !window || window->windowHandle()->isExposed(); }));
    EXPECT_FALSE(window.isNull()) << "It ended before it was on the screen.";
    delete window.data();
}

}  // namespace
