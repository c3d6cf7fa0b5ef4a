// From the shortcut to the picture of a region: pixels, density, clipboard, file and log.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <regex>

#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::difference;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// A session with two windows on the wallpaper, the second one in front and with the input.
struct Scene {
    explicit Scene(const desktop::DesktopOptions& options = {}) : session(options) {
        session.writeSettings(nlohmann::json::object());
        session.start();
        below = std::make_unique<desktop::TestWindow>(
            session.desktop().displayName(),
            desktop::TestWindowOptions{.x = 90, .y = 120, .width = 300, .height = 260, .seed = 2});
        front = std::make_unique<desktop::TestWindow>(
            session.desktop().displayName(),
            desktop::TestWindowOptions{.x = 300, .y = 250, .width = 420, .height = 300, .seed = 3});
        front->focus();
        session.waitUntilStill();
    }
    /// Drags, waits for the delivery and compares the picture with the screen's own content.
    void expectCapture(const Area& area, const std::function<void()>& drag) {
        const Picture expected = session.screen(area);
        session.openOverlay();
        const std::size_t before = session.mark();
        drag();
        const std::string path = session.waitForLine(line::saved, before);
        const auto png = desktop::decodePng(desktop::readFile(path));
        EXPECT_EQ(difference(expected, png.picture), "equal");
        EXPECT_EQ(difference(expected, session.clipboardPicture().picture), "equal");
        session.waitUntilClosed();
    }

    Session session;
    std::unique_ptr<desktop::TestWindow> below;
    std::unique_ptr<desktop::TestWindow> front;
};

class RegionCapture : public testing::TestWithParam<desktop::Compositor> {
  protected:
    Scene scene{{.compositor = GetParam()}};
    Session& session = scene.session;
    desktop::InputDriver& input = session.input();
};

INSTANTIATE_TEST_SUITE_P(Desktops, RegionCapture,
                         testing::Values(desktop::Compositor::none, desktop::Compositor::picom),
                         [](const auto& parameter) {
                             return parameter.param == desktop::Compositor::none ? "frozen"
                                                                                 : "live";
                         });

TEST_P(RegionCapture, the_file_and_the_clipboard_hold_the_screen_s_own_pixels) {
    const Area area{100, 110, 400, 300};
    const Picture expected = session.screen(area);
    session.openOverlay();
    const std::size_t before = session.mark();
    input.drag({100, 110}, {500, 410});
    const std::string path = session.waitForLine(line::saved, before);
    session.waitUntilClosed();

    const std::regex name(R"(Screenshot \d{4}-\d\d-\d\d at \d\d\.\d\d\.\d\d\.png)");
    const std::filesystem::path file(path);
    EXPECT_EQ(file.parent_path(), session.desktop().home() / "Downloads");
    EXPECT_TRUE(std::regex_match(file.filename().string(), name)) << file;
    EXPECT_THAT(session.downloads(), ElementsAre(file));

    const auto bytes = desktop::readFile(file);
    const auto png = desktop::decodePng(bytes);
    EXPECT_EQ(difference(expected, png.picture), "equal");
    EXPECT_EQ(png.bitDepth, 8);
    EXPECT_FALSE(png.hasAlpha);
    // One point is one pixel here: 72 pixels per inch.
    EXPECT_EQ(png.density, (desktop::Png::Density{2835, 2835}));

    EXPECT_EQ(session.clipboard().targets().at(0), "image/png");
    EXPECT_EQ(session.clipboard().read("image/png"), bytes);
}

TEST_P(RegionCapture, the_log_tells_the_road_in_its_order) {
    const std::size_t before = session.mark();
    session.openOverlay();
    input.drag({100, 110}, {500, 410});
    const std::string path = session.waitForLine(line::saved, before);
    session.waitUntilClosed();
    auto lines = session.linesSince(before);
    ASSERT_GE(lines.size(), 4U);
    const std::string target = lines[3];
    EXPECT_TRUE(target.starts_with("🟢 Target App: ")) << target;
    EXPECT_TRUE(target.ends_with(" (PID: " + std::to_string(::getpid()) + ")")) << target;
    EXPECT_THAT(
        lines,
        ElementsAre("🟡 HotKey event received! ID: 1", "🟡 Dispatching to takeScreenshot()",
                    "🔵 takeScreenshot() called - Cmd+Shift+1 was pressed", target,
                    line::cursorRestored, line::cursorSet, line::showSelectionCalled,
                    "🖱️ SelectionView mouseDown at (100.0, 690.0)", line::cursorRestored,
                    line::cursorRestored, line::regionCopied, line::saved + path));
}

TEST_P(RegionCapture, a_drag_up_and_to_the_left_gives_the_same_rectangle) {
    scene.expectCapture({300, 250, 200, 150}, [&] { input.drag({500, 400}, {300, 250}); });
}

TEST_P(RegionCapture, with_alt_held_the_press_point_is_the_centre) {
    scene.expectCapture({300, 220, 200, 160}, [&] {
        input.press(key::leftAlt);
        input.drag({400, 300}, {500, 380});
        input.release(key::leftAlt);
    });
}

TEST_P(RegionCapture, alt_pressed_in_the_middle_of_a_drag_turns_the_corner_into_the_centre) {
    scene.expectCapture({320, 260, 160, 80}, [&] {
        input.moveTo({400, 300});
        input.pressButton();
        input.moveInSteps({400, 300}, {450, 350});
        input.press(key::leftAlt);
        input.moveInSteps({450, 350}, {480, 340});
        input.releaseButton();
        input.release(key::leftAlt);
    });
}

TEST_P(RegionCapture, alt_without_a_further_motion_changes_nothing) {
    scene.expectCapture({400, 300, 50, 60}, [&] {
        input.moveTo({400, 300});
        input.pressButton();
        input.moveInSteps({400, 300}, {450, 360});
        input.press(key::leftAlt);
        input.releaseButton();
        input.release(key::leftAlt);
    });
}

TEST_P(RegionCapture, a_selection_of_the_whole_display_is_the_whole_display) {
    scene.expectCapture({0, 0, 1280, 800}, [&] { input.drag({0, 0}, {1279, 799}); });
}

TEST_P(RegionCapture, lock_keys_do_not_keep_the_shortcut_from_working) {
    input.tap(key::capsLock);
    input.tap(key::numLock);
    scene.expectCapture({100, 110, 80, 70}, [&] { input.drag({100, 110}, {180, 180}); });
}

TEST_P(RegionCapture, two_selections_after_each_other_are_two_pictures) {
    scene.expectCapture({100, 110, 80, 70}, [&] { input.drag({100, 110}, {180, 180}); });
    scene.expectCapture({500, 300, 90, 95}, [&] { input.drag({500, 300}, {590, 395}); });
}

TEST_P(RegionCapture, the_recognition_shortcut_goes_the_same_road_without_sound_or_notification) {
    const Picture expected = session.screen({100, 110, 400, 300});
    const std::size_t before = session.mark();
    session.pressRecognitionShortcut();
    session.program().waitForLine(line::cursorSet, before);
    session.waitUntilOpen();
    input.drag({100, 110}, {500, 410});
    const std::string path = session.waitForLine(line::saved, before);
    EXPECT_EQ(difference(expected, desktop::decodePng(desktop::readFile(path)).picture), "equal");
    EXPECT_THAT(session.linesSince(before),
                testing::IsSupersetOf({"🟡 HotKey event received! ID: 2",
                                       "🟡 Dispatching to handleCmdShift2()",
                                       "Cmd+Shift+2 pressed - OCR Mode"}));
    EXPECT_EQ(session.countSince(before, "🔵"), 0U);
}

}  // namespace
}  // namespace journeys
