#include "app/lumaframe_app.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <memory>

#include "app/menu_bar_commands.h"
#include "doubles/doubles.h"
#include "overlay/selection_overlay_manager.h"
#include "shortcuts/shortcut_manager.h"

namespace {

using app::LaunchReason;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

/// A whole program over fakes. There is one for all tests, as there is one in a process: the
/// hot-key manager and the overlay manager are built once and never destroyed.
struct Program {
    Program() {
        log.recordInto(calls);
        permissions.recordInto(calls);
        windows.recordInto(calls);
        hotKeys.recordInto(calls);
        keyboard.recordInto(calls);
        surfaces.recordInto(calls);
        fileManager.recordInto(calls);
        soundPlayer.recordInto(calls);
        pasteboard.recordInto(calls);
        recognizer.recordInto(calls);
        queue.allowLeftovers();
    }

    doubles::CallLog calls;
    doubles::FakeLog log;
    doubles::ManualMainQueue queue;
    doubles::FakeDisplays displays;
    doubles::FakeFileManager fileManager;
    doubles::FakePermissions permissions;
    doubles::MemorySettingsBackend backend;
    doubles::FakeWindows windows;
    doubles::FakeHotKeyService hotKeys;
    doubles::FakeKeyMonitor keyMonitor;
    doubles::FakeWorkspace workspace;
    doubles::FakeKeyboardTap keyboard;
    doubles::FakePointer pointer;
    doubles::FakeOverlaySurfaceFactory surfaces;
    doubles::FakeCaptureService service;
    doubles::FakePasteboard pasteboard;
    doubles::FakeImageEncoder encoder;
    doubles::FakeTextRecognizer recognizer;
    doubles::FakeSoundPlayer soundPlayer;
    doubles::FakeUserNotifications userNotifications;
    doubles::FakeLoginItemService loginItems;
    doubles::FakeVideoLoopers videoLoopers;
    app::NotificationCenter notifications;
    app::LumaframeApp app{{.mainQueue = queue,
                           .displays = displays,
                           .fileManager = fileManager,
                           .permissions = permissions,
                           .settings = backend,
                           .windows = windows,
                           .application = windows,
                           .hotKeys = hotKeys,
                           .keyMonitor = keyMonitor,
                           .workspace = workspace,
                           .keyboardTap = keyboard,
                           .pointer = pointer,
                           .overlaySurfaces = surfaces,
                           .captureService = service,
                           .pasteboard = pasteboard,
                           .imageEncoder = encoder,
                           .textRecognizer = recognizer,
                           .soundPlayer = soundPlayer,
                           .userNotifications = userNotifications,
                           .loginItems = loginItems,
                           .videoLoopers = videoLoopers,
                           .bundle = {.identifier = "app.lumaframe.Lumaframe"}},
                          notifications,
                          log};
};

class LumaframeAppTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        // As long as the process, like what is built from it.
        program_ = new Program;
        program_->app.launch(LaunchReason::user);
        firstLaunch_ = program_->calls.calls();
        program_->queue.advance(200ms);
    }
    void SetUp() override {
        program().calls.clear();
        program().surfaces.surfaces.clear();
        program().service.answers = doubles::FakeCaptureService::Answers::byHand;
    }
    void TearDown() override {
        overlay::SelectionOverlayManager::shared().close();
        program().queue.advance(1000ms);
    }

    static Program& program() { return *program_; }
    static const std::vector<std::string>& firstLaunch() { return firstLaunch_; }
    static QAction* item(const QString& text) {
        for (QAction* action : program().app.menu().menu().actions()) {
            if (action->text() == text) {
                return action;
            }
        }
        return nullptr;
    }

  private:
    static inline Program* program_ = nullptr;
    static inline std::vector<std::string> firstLaunch_;
};

TEST_F(LumaframeAppTest, a_first_launch_goes_through_its_steps_in_order) {
    EXPECT_THAT(
        firstLaunch(),
        ElementsAre(
            "can capture screen", "is accessibility trusted", "downloads directories",
            "is readable: /home/someone/Downloads", "activation policy: 0",
            "is accessibility trusted", "log: 🔧 Migrating shortcuts: forcing both to enabled",
            "log: 🔧 Migrating screenshot shortcut: forcing to Cmd+Shift+1", "register: 18/768 id 1",
            "log: ✅ Screenshot shortcut registered successfully (keyCode: 18)", "install handler",
            "log: ✅ Event handler installed successfully", "unregister: 1", "remove handler: 2",
            "register: 18/768 id 1",
            "log: ✅ Screenshot shortcut registered successfully (keyCode: 18)",
            "register: 19/768 id 2", "log: ✅ OCR shortcut registered successfully (keyCode: 19)",
            "install handler", "log: ✅ Event handler installed successfully", "unregister: 3",
            "unregister: 4", "remove handler: 5", "register: 18/768 id 1",
            "log: ✅ Screenshot shortcut registered successfully (keyCode: 18)",
            "register: 19/768 id 2", "log: ✅ OCR shortcut registered successfully (keyCode: 19)",
            "install handler", "log: ✅ Event handler installed successfully", "open scene: main"));
}

TEST_F(LumaframeAppTest, a_launch_by_an_action_opens_no_window) {
    program().app.launch(LaunchReason::action);
    EXPECT_THAT(
        program().calls.calls(),
        ElementsAre("can capture screen", "is accessibility trusted", "downloads directories",
                    "is readable: /home/someone/Downloads", "activation policy: 0"));
}

TEST_F(LumaframeAppTest, the_menu_holds_its_three_items_in_their_order) {
    std::vector<std::string> texts;
    for (const QAction* action : program().app.menu().menu().actions()) {
        texts.push_back(action->isSeparator() ? "-" : action->text().toStdString());
    }
    EXPECT_THAT(texts, ElementsAre("Show Lumaframe", "-", "Settings...", "-", "Quit Lumaframe"));
}

TEST_F(LumaframeAppTest, show_brings_the_settings_window_to_the_front) {
    item("Show Lumaframe")->trigger();
    EXPECT_THAT(program().calls.calls(), ElementsAre("activate", "front: 1"));
}

TEST_F(LumaframeAppTest, settings_opens_the_permissions_window) {
    item("Settings...")->trigger();
    EXPECT_THAT(program().calls.calls(), ElementsAre("open scene: permissions"));
}

TEST_F(LumaframeAppTest, the_notification_opens_the_permissions_window_once) {
    program().notifications.post("OpenPermissionsWindow");
    EXPECT_THAT(program().calls.calls(), ElementsAre("open scene: permissions"));
}

TEST_F(LumaframeAppTest, the_command_of_the_windows_goes_by_way_of_the_notification) {
    int posted = 0;
    const auto observation =
        program().notifications.observe("OpenPermissionsWindow", [&] { ++posted; });
    program().app.menu().settingsCommand().trigger();
    EXPECT_EQ(posted, 1);
    EXPECT_THAT(program().calls.calls(), ElementsAre("open scene: permissions"));
}

TEST_F(LumaframeAppTest, quit_ends_the_program) {
    item("Quit Lumaframe")->trigger();
    EXPECT_THAT(program().calls.calls(), ElementsAre("terminate"));
}

TEST_F(LumaframeAppTest, a_hot_key_opens_the_overlay) {
    program().hotKeys.press(18, 768);
    program().queue.runAll();
    EXPECT_THAT(program().calls.startingWith({"log: 🟡", "log: 🔵", "surface create"}),
                ElementsAre("log: 🟡 HotKey event received! ID: 1",
                            "log: 🟡 Dispatching to takeScreenshot()",
                            "log: 🔵 takeScreenshot() called - Cmd+Shift+1 was pressed",
                            "surface create: 1", "log: 🔵 showSelection() called"));
}

TEST_F(LumaframeAppTest, an_action_waits_for_the_keyboard_and_is_then_a_hot_key) {
    program().app.performAction("screenshot");
    EXPECT_THAT(program().calls.calls(), IsEmpty());
    ASSERT_EQ(program().keyboard.waits.size(), 1U);
    EXPECT_EQ(program().keyboard.waits[0].limit, 500ms);
    program().keyboard.endWaits();
    EXPECT_THAT(program().calls.calls(), ElementsAre("log: 🟡 HotKey event received! ID: 1"));
    program().queue.runAll();
    EXPECT_EQ(program().calls.count("surface show: 1"), 1);
}

TEST_F(LumaframeAppTest, the_other_action_is_the_other_hot_key) {
    program().app.performAction("recognize-text");
    program().keyboard.endWaits();
    program().queue.runAll();
    EXPECT_EQ(program().calls.count("log: 🟡 HotKey event received! ID: 2"), 1);
    EXPECT_EQ(overlay::SelectionOverlayManager::shared().currentMode(), base::CaptureMode::ocr);
}

TEST_F(LumaframeAppTest, text_recognition_gets_ready_once_its_overlay_is_up) {
    program().hotKeys.press(19, 768);
    program().queue.runAll();
    EXPECT_THAT(program().calls.startingWith({"surface show", "prepare"}),
                ElementsAre("surface show: 1", "prepare"));
}

TEST_F(LumaframeAppTest, a_screenshot_gets_no_text_recognition_ready) {
    program().hotKeys.press(18, 768);
    program().queue.runAll();
    EXPECT_EQ(program().calls.count("prepare"), 0);
}

TEST_F(LumaframeAppTest, an_action_of_another_name_is_ignored) {
    program().app.performAction("");
    program().app.performAction("Screenshot");
    EXPECT_THAT(program().keyboard.waits, IsEmpty());
}

TEST_F(LumaframeAppTest, the_whole_road_from_the_shortcut_to_the_file) {
    program().service.answers = doubles::FakeCaptureService::Answers::atOnce;
    program().hotKeys.press(18, 768);
    program().queue.runAll();
    const auto surface = program().surfaces.openSurfaces().at(0);
    surface->press({10, 20});
    surface->drag({110, 70});
    surface->release({110, 70});
    program().calls.clear();
    program().queue.runAll();
    const auto steps =
        program().calls.startingWith({"surface", "pasteboard", "file", "sound play"});
    ASSERT_EQ(steps.size(), 5U);
    EXPECT_EQ(program().calls.count("surface close: 1"), 1);
    EXPECT_EQ(program().fileManager.files.size(), 1U);
    EXPECT_EQ(program().pasteboard.writeCount, 1);
    EXPECT_EQ(program().soundPlayer.played.size(), 1U);
}

TEST_F(LumaframeAppTest, the_shortcut_ten_times_fast_leaves_one_overlay) {
    for (int press = 0; press < 10; ++press) {
        program().hotKeys.press(18, 768);
    }
    program().queue.runAll();
    EXPECT_EQ(program().surfaces.surfaces.size(), 10U);
    EXPECT_EQ(program().surfaces.openSurfaces().size(), 1U);
    EXPECT_EQ(program().keyboard.installedCount(), 1U);
    EXPECT_EQ(program().calls.count("log: 🔵 showSelection() called"), 10);
}

TEST_F(LumaframeAppTest, its_own_overlay_is_left_out_of_the_picture) {
    program().service.content->windows = {
        {9, {}, 1000, capture::RunningApplication{"app.lumaframe.Lumaframe", 1}, nullptr}};
    program().hotKeys.press(18, 768);
    program().queue.runAll();
    const auto surface = program().surfaces.openSurfaces().at(0);
    surface->press({10, 20});
    surface->drag({110, 70});
    surface->release({110, 70});
    program().queue.runAll();
    program().service.answerContent();
    const auto& filter =
        std::get<capture::DisplayFilter>(program().service.imageRequests.back().filter);
    EXPECT_EQ(filter.excludedWindows.size(), 1U);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argumentCount, arguments);
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
