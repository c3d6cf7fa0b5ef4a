#include "platform/qt/qt_windows.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QStyle>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace platform::qt {

namespace {

/// Calls `action` once, as soon as the window is on the screen, unless `owner` has gone: a window
/// that is closed dies later. A request to the window manager goes over another connection: sent
/// earlier it could overtake the mapping.
class AtNextExposure final : public QObject {
  public:
    AtNextExposure(QWindow& window, QObject& owner, std::function<void()> action)
        : QObject(&window), owner_(&owner), action_(std::move(action)) {
        window.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Expose && static_cast<QWindow*>(watched)->isExposed()) {
            watched->removeEventFilter(this);
            deleteLater();
            if (owner_ != nullptr) {
                action_();
            }
        }
        return false;
    }

  private:
    QPointer<QObject> owner_;
    std::function<void()> action_;
};

/// Where a window that is not shown yet opens, unless the window manager knows better.
void centreOnScreen(QWidget& window) {
    const QSize size = window.sizeHint().expandedTo(window.minimumSize());
    const QRect screen = window.screen()->availableGeometry();
    window.setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, screen));
}

}  // namespace

QtWindows::QtWindows(app::NotificationCenter& notificationCenter, base::MainQueue& queue,
                     MakeScene makeScene, WindowManager windowManager, HandOver handOver)
    : notificationCenter_(notificationCenter),
      queue_(queue),
      makeScene_(std::move(makeScene)),
      windowManager_(std::move(windowManager)),
      handOver_(std::move(handOver)) {
    // The program lives in the tray: closing its last window ends nothing.
    QApplication::setQuitOnLastWindowClosed(false);
    // Not the application's state, which stays "active" when the last window is destroyed.
    QObject::connect(qApp, &QGuiApplication::focusWindowChanged, &life_,
                     [this](QWindow* window) { noteFocus(window); });
}

QtWindows::~QtWindows() {
    for (const OpenWindow& window : openWindows_) {
        delete window.widget.data();
    }
}

std::vector<app::Window> QtWindows::windows() const {
    std::vector<app::Window> list;
    for (const OpenWindow& window : openWindows_) {
        if (isOpen(window.widget)) {
            list.push_back({window.handle, window.widget->objectName().toStdString()});
        }
    }
    return list;
}

void QtWindows::activate() {
    forgetClosedWindows();
    QWidget* front = isOpen(awaited_) ? awaited_.data() : QApplication::activeWindow();
    if (front == nullptr && !openWindows_.empty()) {
        front = openWindows_.back().widget;
    }
    if (front != nullptr) {
        bringToFront(*front);
    }
}

void QtWindows::makeKeyAndOrderFront(app::WindowHandle handle) {
    if (QWidget* window = find(handle)) {
        bringToFront(*window);
    }
}

void QtWindows::setLevel(app::WindowHandle handle, app::WindowLevel level) {
    QWidget* window = find(handle);
    if (window == nullptr || !windowManager_.setLevel) {
        return;
    }
    const auto apply = [this, window, level] { windowManager_.setLevel(window->winId(), level); };
    if (canBeManaged(*window)) {
        apply();
    } else {
        new AtNextExposure(*window->windowHandle(), life_, apply);
    }
}

void QtWindows::close(app::WindowHandle handle) {
    if (QWidget* window = find(handle)) {
        window->close();
    }
}

QWidget* QtWindows::find(app::WindowHandle handle) {
    forgetClosedWindows();
    for (const OpenWindow& window : openWindows_) {
        if (window.handle == handle) {
            return window.widget;
        }
    }
    return nullptr;
}

void QtWindows::openScene(const std::string& sceneId) {
    forgetClosedWindows();
    const auto open = std::find_if(openWindows_.begin(), openWindows_.end(),
                                   [&](const OpenWindow& one) { return one.sceneId == sceneId; });
    if (open != openWindows_.end()) {
        bringToFront(*open->widget);
        return;
    }
    // The window owns itself from here on: the user's closing it is its end.
    QWidget* window = makeScene_(sceneId).release();
    if (window == nullptr) {
        return;
    }
    window->setAttribute(Qt::WA_DeleteOnClose);
    if (sceneId == "permissions") {
        centreOnScreen(*window);
    }
    openWindows_.push_back({++lastHandle_, sceneId, window});
    show(*window);
}

void QtWindows::setActivationPolicy(app::ActivationPolicy policy) {
    policy_ = policy;
    forgetClosedWindows();
    for (const OpenWindow& window : openWindows_) {
        applyPolicy(*window.widget);
    }
}

void QtWindows::terminate() {
    if (std::exchange(ending_, Ending::asked) == Ending::asked) {
        return;
    }
    queue_.post([handOver = handOver_] {
        const auto end = [] { QCoreApplication::exit(0); };
        if (handOver) {
            handOver(end);
        } else {
            end();
        }
    });
}

void QtWindows::addApplicationCommand(QAction& command) {
    commands_.push_back(&command);
    for (const OpenWindow& window : openWindows_) {
        if (window.widget != nullptr) {
            window.widget->addAction(&command);
        }
    }
}

void QtWindows::show(QWidget& window) {
    window.addActions({commands_.begin(), commands_.end()});
    // The X11 name of the identifier (WM_WINDOW_ROLE), set before the window manager sees it.
    window.setWindowRole(window.objectName());
    window.winId();
    new AtNextExposure(*window.windowHandle(), life_, [this, shown = QPointer(&window)] {
        if (policy_ != app::ActivationPolicy::regular) {
            applyPolicy(*shown);
        }
    });
    window.show();
    bringToFront(window);
}

void QtWindows::bringToFront(QWidget& window) {
    if (window.isMinimized()) {
        window.showNormal();
    }
    window.raise();
    front_ = &window;
    awaited_ = window.isActiveWindow() ? nullptr : &window;
    if (canBeManaged(window)) {
        takeInput(window);
        return;
    }
    new AtNextExposure(*window.windowHandle(), life_, [this] {
        // Of several windows that come up together the last one asked for gets the input, however
        // late the others are: a window manager gives it to each new window first.
        if (front_ != nullptr && front_->windowHandle()->isExposed()) {
            takeInput(*front_);
        }
    });
}

bool QtWindows::canBeManaged(const QWidget& window) const {
    return window.windowHandle()->isExposed() || windowManager_.management == Management::bySystem;
}

void QtWindows::takeInput(QWidget& window) {
    // One of the two: a second request, sent later, would take the input back from a window that
    // the user has gone to meanwhile.
    if (windowManager_.activate) {
        windowManager_.activate(window.winId());
    } else {
        window.activateWindow();
    }
}

void QtWindows::applyPolicy(QWidget& window) {
    if (windowManager_.setPolicy) {
        windowManager_.setPolicy(window.winId(), policy_);
    }
}

void QtWindows::noteFocus(QWindow* window) {
    const bool wasActive = focusWindow_ != nullptr;
    focusWindow_ = window;
    if (awaited_ != nullptr && awaited_->windowHandle() == window) {
        awaited_ = nullptr;
    }
    if (window != nullptr && !wasActive &&
        windowManager_.management == Management::byAnotherProgram) {
        notificationCenter_.post(app::applicationDidBecomeActiveNotification);
    }
}

bool QtWindows::isOpen(const QWidget* window) const {
    return window != nullptr && window->isVisible() &&
           (!windowManager_.exists || windowManager_.exists(window->effectiveWinId()));
}

void QtWindows::forgetClosedWindows() {
    std::erase_if(openWindows_, [this](const OpenWindow& window) {
        if (isOpen(window.widget)) {
            return false;
        }
        if (window.widget != nullptr && window.widget->isVisible()) {
            // Another program has destroyed it; the toolkit goes on believing in it.
            window.widget->deleteLater();
        }
        return true;
    });
}

}  // namespace platform::qt
