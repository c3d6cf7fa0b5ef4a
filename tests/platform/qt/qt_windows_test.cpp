#include "platform/qt/qt_windows.h"

#include <gmock/gmock.h>

#include <QAction>
#include <QCoreApplication>

#include "desktop/test_window.h"
#include "platform/qt/event_source.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_session.h"
#include "platform/x11/connection.h"
#include "platform/x11/window_manager_client.h"
#include "ui/permissions_window_control.h"

namespace {

using app::ActivationPolicy;
using platform::qt::QtWindows;
using qt_tests::QtSession;
using qt_tests::runUntil;
using testing::ElementsAre;
using testing::IsEmpty;

std::unique_ptr<QWidget> makeWindow(const std::string& sceneId) {
    if (sceneId != "main" && sceneId.find("permissions") == std::string::npos) {
        return nullptr;
    }
    auto window = std::make_unique<QWidget>();
    window->setObjectName(QString::fromStdString(sceneId));
    window->setMinimumSize(360, 240);
    return window;
}

class Windows : public testing::Test {
  protected:
    Windows()
        : desktop_(QtSession::shared().desktop()),
          connection_(std::move(platform::x11::Connection::open().value())),
          source_(connection_->fileDescriptor(),
                  [this] { return connection_->dispatchNextEvent(); }),
          windowManager_(*connection_) {}

    QtWindows make(QtWindows::HandOver handOver = {}) {
        return QtWindows(
            center_, queue_, makeWindow,
            {.activate = [this](WId window) { windowManager_.activate(nativeId(window)); },
             .setPolicy =
                 [this](WId window, ActivationPolicy policy) {
                     windowManager_.setActivationPolicy(nativeId(window), policy);
                 },
             .setLevel =
                 [this](WId window, app::WindowLevel level) {
                     windowManager_.setLevel(nativeId(window), level);
                 },
             .exists = [this](WId window) { return windowManager_.exists(nativeId(window)); }},
            std::move(handOver));
    }
    static xcb_window_t nativeId(WId window) { return static_cast<xcb_window_t>(window); }

    static std::vector<std::string> identifiers(const QtWindows& windows) {
        std::vector<std::string> list;
        for (const auto& window : windows.windows()) {
            list.push_back(window.identifier);
        }
        return list;
    }
    /// The window manager's windows with the role, oldest first.
    std::vector<xcb_window_t> withRole(const std::string& role) {
        const auto bytes = desktop_.client().property(desktop_.client().root(), "_NET_CLIENT_LIST");
        std::vector<xcb_window_t> found;
        for (std::size_t at = 0; bytes && at + 4 <= bytes->size(); at += 4) {
            xcb_window_t window = 0;
            std::memcpy(&window, bytes->data() + at, 4);
            const auto text = desktop_.client().property(window, "WM_WINDOW_ROLE");
            if (text && std::string(text->begin(), text->end()) == role) {
                found.push_back(window);
            }
        }
        return found;
    }
    xcb_window_t active() {
        return desktop_.client()
            .value(desktop_.client().root(), "_NET_ACTIVE_WINDOW")
            .value_or(XCB_WINDOW_NONE);
    }
    bool isActive(const std::string& role) {
        const auto windows = withRole(role);
        return windows.size() == 1 && active() == windows.front();
    }
    /// Whether the window is the active one in the end, and not only on the way there.
    bool staysActive(const std::string& role) {
        using Clock = std::chrono::steady_clock;
        auto since = Clock::now();
        return runUntil([&] {
            if (!isActive(role)) {
                since = Clock::now();
            }
            return Clock::now() - since > std::chrono::milliseconds(300);
        });
    }
    /// The user goes to another program's window. Again and again, since the window manager may
    /// still have a request for one of ours before it.
    void goTo(desktop::TestWindow& other) {
        ASSERT_TRUE(runUntil([&] {
            const bool isThere =
                active() == other.id() && QGuiApplication::focusWindow() == nullptr;
            if (!isThere) {
                other.focus();
            }
            return isThere;
        }));
    }
    bool skipsTaskbar(const std::string& role) {
        return hasState(role, "_NET_WM_STATE_SKIP_TASKBAR");
    }
    bool isFloating(const std::string& role) { return hasState(role, "_NET_WM_STATE_ABOVE"); }
    bool hasState(const std::string& role, const char* state) {
        const auto windows = withRole(role);
        const auto bytes = windows.empty()
                               ? std::nullopt
                               : desktop_.client().property(windows.front(), "_NET_WM_STATE");
        const xcb_atom_t wanted = desktop_.client().atom(state);
        for (std::size_t at = 0; bytes && at + 4 <= bytes->size(); at += 4) {
            xcb_atom_t atom = 0;
            std::memcpy(&atom, bytes->data() + at, 4);
            if (atom == wanted) {
                return true;
            }
        }
        return false;
    }

    desktop::Desktop& desktop_;
    app::NotificationCenter center_;
    platform::qt::QtMainQueue queue_;
    std::unique_ptr<platform::x11::Connection> connection_;
    platform::qt::EventSource source_;
    platform::x11::WindowManagerClient windowManager_;
};

TEST_F(Windows, a_scene_is_one_window_with_its_identifier_and_the_last_one_asked_for_is_in_front) {
    QtWindows windows = make();
    EXPECT_THAT(identifiers(windows), IsEmpty());
    windows.openScene("main");
    windows.openScene("permissions");
    windows.openScene("main");
    windows.openScene("nothing");
    EXPECT_THAT(identifiers(windows), ElementsAre("main", "permissions"));
    EXPECT_TRUE(runUntil([&] { return isActive("main"); }));
    EXPECT_TRUE(runUntil([&] { return withRole("permissions").size() == 1; }));
    EXPECT_EQ(withRole("main").size(), 1U);
    EXPECT_TRUE(staysActive("main"));
}

TEST_F(Windows, of_two_scenes_that_open_together_the_later_one_is_in_front) {
    QtWindows windows = make();
    windows.openScene("main");
    windows.openScene("permissions");
    ASSERT_TRUE(runUntil([&] { return !withRole("main").empty(); }));
    EXPECT_TRUE(staysActive("permissions"));
}

TEST_F(Windows, a_closed_window_is_gone_and_its_scene_opens_anew) {
    QtWindows windows = make();
    windows.openScene("main");
    ASSERT_TRUE(runUntil([&] { return QApplication::activeWindow() != nullptr; }));
    QPointer<QWidget> first = QApplication::activeWindow();
    const auto handle = windows.windows().front().handle;
    first->close();
    EXPECT_THAT(identifiers(windows), IsEmpty());
    EXPECT_TRUE(runUntil([&] { return first.isNull() && withRole("main").empty(); }));
    windows.makeKeyAndOrderFront(handle);
    windows.openScene("main");
    EXPECT_TRUE(runUntil([&] { return isActive("main"); }));
    EXPECT_NE(windows.windows().front().handle, handle);
}

TEST_F(Windows, a_window_that_another_program_destroyed_is_gone_and_its_scene_opens_anew) {
    QtWindows windows = make();
    windows.openScene("main");
    ASSERT_TRUE(runUntil([&] { return isActive("main"); }));
    const xcb_window_t first = withRole("main").front();
    xcb_destroy_window(desktop_.client().get(), first);
    desktop_.client().synchronize();
    EXPECT_THAT(identifiers(windows), IsEmpty());
    windows.openScene("main");
    EXPECT_THAT(identifiers(windows), ElementsAre("main"));
    EXPECT_TRUE(runUntil([&] { return isActive("main"); }));
    EXPECT_NE(withRole("main").front(), first);
}

TEST_F(Windows, an_open_scene_comes_in_front_of_another_program) {
    QtWindows windows = make();
    windows.openScene("main");
    ASSERT_TRUE(runUntil([&] { return isActive("main"); }));
    desktop::TestWindow other(desktop_.displayName(), {.x = 0, .y = 0});
    goTo(other);
    windows.openScene("main");
    EXPECT_TRUE(runUntil([&] { return isActive("main"); }));
    goTo(other);
    windows.makeKeyAndOrderFront(windows.windows().front().handle);
    EXPECT_TRUE(runUntil([&] { return isActive("main"); }));
    goTo(other);
    windows.activate();
    EXPECT_TRUE(runUntil([&] { return isActive("main"); }));
}

TEST_F(Windows, becoming_active_is_posted_each_time_the_program_comes_to_the_front) {
    QtWindows windows = make();
    int count = 0;
    const auto observation =
        center_.observe(app::applicationDidBecomeActiveNotification, [&] { ++count; });
    windows.openScene("main");
    ASSERT_TRUE(runUntil([&] { return count == 1; }));
    windows.openScene("permissions");
    ASSERT_TRUE(runUntil([&] { return isActive("permissions"); }));
    EXPECT_EQ(count, 1);
    desktop::TestWindow other(desktop_.displayName(), {.x = 0, .y = 0});
    goTo(other);
    const int before = count;
    windows.activate();
    EXPECT_TRUE(runUntil([&] { return count == before + 1; }));
}

TEST_F(Windows, a_system_that_manages_windows_itself_is_asked_at_once_and_tells_of_activation) {
    std::vector<WId> activated;
    std::vector<app::WindowLevel> levels;
    QtWindows windows(center_, queue_, makeWindow,
                      {.activate =
                           [&](WId window) {
                               activated.push_back(window);
                               windowManager_.activate(nativeId(window));
                           },
                       .setPolicy = {},
                       .setLevel = [&](WId, app::WindowLevel level) { levels.push_back(level); },
                       .exists = {},
                       .management = QtWindows::Management::bySystem},
                      {});
    int count = 0;
    const auto observation =
        center_.observe(app::applicationDidBecomeActiveNotification, [&] { ++count; });
    windows.openScene("main");
    EXPECT_EQ(activated.size(), 1U);
    windows.setLevel(windows.windows().at(0).handle, app::WindowLevel::floating);
    EXPECT_EQ(levels, std::vector{app::WindowLevel::floating});
    ASSERT_TRUE(runUntil([&] { return isActive("main"); }));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(count, 0);
}

TEST_F(Windows, an_accessory_program_is_not_in_the_task_bar) {
    QtWindows windows = make();
    windows.openScene("main");
    ASSERT_TRUE(runUntil([&] { return isActive("main"); }));
    EXPECT_FALSE(skipsTaskbar("main"));
    windows.setActivationPolicy(ActivationPolicy::accessory);
    EXPECT_TRUE(runUntil([&] { return skipsTaskbar("main"); }));
    windows.openScene("permissions");
    EXPECT_TRUE(runUntil([&] { return skipsTaskbar("permissions"); }));
    windows.setActivationPolicy(ActivationPolicy::regular);
    EXPECT_TRUE(runUntil([&] { return !skipsTaskbar("main") && !skipsTaskbar("permissions"); }));
}

TEST_F(Windows, a_window_floats_from_the_moment_it_is_on_the_screen) {
    QtWindows windows = make();
    windows.openScene("main");
    windows.openScene("permissions");
    // Not on the screen yet.
    windows.setLevel(windows.windows().back().handle, app::WindowLevel::floating);
    EXPECT_TRUE(runUntil([&] { return isFloating("permissions"); }));
    EXPECT_FALSE(isFloating("main"));
    windows.setLevel(windows.windows().back().handle, app::WindowLevel::normal);
    EXPECT_TRUE(runUntil([&] { return !isFloating("permissions"); }));
    windows.setLevel(0, app::WindowLevel::floating);
}

TEST_F(Windows, closing_ends_one_window_and_a_closed_one_is_ignored) {
    QtWindows windows = make();
    windows.openScene("main");
    windows.openScene("permissions");
    const auto handle = windows.windows().front().handle;
    windows.close(handle);
    EXPECT_THAT(identifiers(windows), ElementsAre("permissions"));
    windows.close(handle);
    EXPECT_THAT(identifiers(windows), ElementsAre("permissions"));
    EXPECT_TRUE(runUntil([&] { return withRole("main").empty(); }));
}

TEST_F(Windows, activating_the_program_leaves_the_window_in_front_that_was_just_asked_for) {
    QtWindows windows = make();
    windows.openScene("permissions");
    windows.openScene("main");
    ASSERT_TRUE(runUntil([&] { return isActive("main"); }));
    windows.makeKeyAndOrderFront(windows.windows().front().handle);
    windows.activate();
    EXPECT_TRUE(staysActive("permissions"));
}

TEST_F(Windows, closing_the_last_window_does_not_end_the_program) {
    QtWindows windows = make();
    windows.openScene("main");
    ASSERT_TRUE(runUntil([&] { return isActive("main"); }));
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
}

TEST_F(Windows, the_shortcut_of_a_command_works_in_windows_opened_before_and_after_it) {
    QtWindows windows = make();
    windows.openScene("main");
    QAction command;
    command.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    int count = 0;
    QObject::connect(&command, &QAction::triggered, &command, [&] { ++count; });
    windows.addApplicationCommand(command);
    ASSERT_TRUE(runUntil([&] { return isActive("main") && QApplication::activeWindow(); }));
    const std::uint8_t comma = desktop_.input().keyCodeOf(',');
    desktop_.input().chord({desktop::key::leftControl, comma});
    EXPECT_TRUE(runUntil([&] { return count == 1; }));
    windows.openScene("permissions");
    ASSERT_TRUE(runUntil([&] {
        return isActive("permissions") && QApplication::activeWindow() != nullptr &&
               QApplication::activeWindow()->objectName() == u"permissions";
    }));
    desktop_.input().chord({desktop::key::leftControl, comma});
    EXPECT_TRUE(runUntil([&] { return count == 2; }));
}

TEST_F(Windows, the_end_comes_once_and_after_the_hand_over) {
    int handOvers = 0;
    std::function<void()> done;
    QtWindows windows = make([&](std::function<void()> whenDone) {
        ++handOvers;
        done = std::move(whenDone);
    });
    QMetaObject::invokeMethod(
        qApp,
        [&] {
            windows.terminate();
            windows.terminate();
            EXPECT_EQ(handOvers, 0);
            queue_.postAfter(std::chrono::milliseconds(50), [&] {
                EXPECT_EQ(handOvers, 1);
                done();
            });
        },
        Qt::QueuedConnection);
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_EQ(handOvers, 1);
}

TEST_F(Windows, of_two_real_permissions_windows_only_the_first_floats_and_closes) {
    QtWindows windows = make();
    windows.openScene("old-permissions");
    windows.openScene("permissions");
    ASSERT_TRUE(runUntil([&] {
        return withRole("old-permissions").size() == 1 && withRole("permissions").size() == 1;
    }));
    const std::vector<std::string> order = identifiers(windows);
    ASSERT_EQ(order.size(), 2U);
    const std::string& first = order.front();
    const std::string& second = order.back();
    ui::PermissionsWindowControl control(
        {.windows = windows, .mainQueue = queue_, .notifications = center_});
    control.noteShown();
    EXPECT_TRUE(runUntil([&] { return isFloating(first) && isActive(first); }));
    EXPECT_FALSE(isFloating(second));
    center_.post(app::closePermissionsWindowNotification);
    EXPECT_TRUE(runUntil([&] { return withRole(first).empty(); }));
    EXPECT_EQ(withRole(second).size(), 1U);
}

}  // namespace
