// Recording a shortcut in the settings window, with the keys and the pointer of a person.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using testing::IsEmpty;

// X key codes beyond those that the driver names.
constexpr std::uint8_t digit9 = 18;
constexpr std::uint8_t q = 24;
constexpr std::uint8_t z = 52;
constexpr std::uint8_t comma = 59;
constexpr std::uint8_t f4 = 70;
constexpr std::uint8_t f5 = 71;
constexpr std::uint8_t f7 = 73;
constexpr std::uint8_t keypad1 = 87;
constexpr std::uint8_t leftOfZ = 94;

/// The outline of a pill that records.
constexpr std::uint32_t recordingColor = 0xFF8000FF;

class RecorderJourney : public testing::Test {
  protected:
    /// The settings window is open and active, and the first pill, which has the focus, was found.
    void SetUp() override {
        session.start(SettingsWindow::leftOpen);
        const auto window = session.windowWithRole("main");
        ASSERT_TRUE(window.has_value());
        window_ = *window;
        session.require("The settings window becoming active",
                        [&] { return session.activeWindow() == window_; });
        session.waitUntilStill();
        input().tap(key::space);
        session.require("The recording", [&] { return isRecording(); });
        pill_ = *recordingPill();
        input().tap(key::escape);
        session.require("The end of the recording", [&] { return !isRecording(); });
    }

    desktop::InputDriver& input() { return session.input(); }
    desktop::XClient& client() { return session.desktop().client(); }

    Area areaOf(xcb_window_t window) {
        const desktop::Reply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(
            client().get(), xcb_get_geometry(client().get(), window), nullptr));
        const desktop::Reply<xcb_translate_coordinates_reply_t> place(
            xcb_translate_coordinates_reply(
                client().get(),
                xcb_translate_coordinates(client().get(), window, client().root(), 0, 0), nullptr));
        if (!size || !place) {
            throw std::runtime_error("The settings window is gone.");
        }
        return {place->dst_x, place->dst_y, size->width, size->height};
    }
    /// The pill that records, native pixels of the screen; none while nothing records.
    std::optional<Area> recordingPill() {
        const Area window = areaOf(window_);
        const Picture picture = session.screen(window);
        Place first{picture.width, picture.height};
        Place last{-1, -1};
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                if (picture.at(x, y) == recordingColor) {
                    first = {std::min(first.x, x), std::min(first.y, y)};
                    last = {std::max(last.x, x), std::max(last.y, y)};
                }
            }
        }
        if (last.x < 0) {
            return std::nullopt;
        }
        // Only the straight sides have the colour unmixed; the round ends reach further.
        const int row = (first.y + last.y) / 2;
        const auto isTinted = [&](int x) {
            const std::uint32_t pixel = picture.at(x, row);
            return (pixel & 0xFF) > ((pixel >> 8) & 0xFF) + 30;
        };
        const int end = last.y - first.y + 1;
        const int left = std::max(first.x - end, 0);
        const int right = std::min(last.x + end, picture.width - 1);
        for (int x = left; x <= right; ++x) {
            if (isTinted(x)) {
                first.x = std::min(first.x, x);
                last.x = std::max(last.x, x);
            }
        }
        return Area{window.x + first.x, window.y + first.y, last.x - first.x + 1,
                    last.y - first.y + 1};
    }
    bool isRecording() { return recordingPill().has_value(); }

    static Place middleOf(const Area& area) {
        return {area.x + area.width / 2, area.y + area.height / 2};
    }
    /// A click on the screenshot pill, and the recording that it begins.
    void startRecording() {
        input().click(middleOf(pill_));
        session.require("The recording", [&] { return isRecording(); });
    }
    void waitUntilRecorded(int keyCode, int modifiers, const std::string& mode = "screenshot") {
        session.require("The recording of " + std::to_string(keyCode), [&] {
            return setting(mode + "KeyCode") == keyCode &&
                   setting(mode + "Modifiers") == modifiers && !isRecording();
        });
    }
    void record(const std::vector<std::uint8_t>& keys, int keyCode, int modifiers) {
        startRecording();
        input().chord(keys);
        waitUntilRecorded(keyCode, modifiers);
    }
    int setting(const std::string& name) {
        const auto settings = session.readSettings();
        return settings.contains(name) ? settings[name].get<int>() : -1;
    }
    void run(const std::vector<std::string>& command) {
        const auto program = session.desktop().startOther("command", command);
        ASSERT_EQ(program->waitForExit(), 0);
    }
    std::size_t hotKeyPresses() {
        return session.countSince(0, "🟡 HotKey event received! ID: ");
    }
    void keepPicture(const std::string& name) {
        desktop::writePng(Session::pictureFile("recorder-" + name),
                          session.screen(areaOf(window_)));
    }

    Session session;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    Area pill_;
};

TEST_F(RecorderJourney, a_screenshot_is_taken_with_the_shortcut_just_recorded) {
    keepPicture("idle");
    startRecording();
    keepPicture("recording");
    input().chord({key::leftSuper, key::leftShift, digit9});
    waitUntilRecorded(25, 768);
    session.waitUntilStill();
    keepPicture("recorded");
    EXPECT_EQ(hotKeyPresses(), 0U);
    const std::size_t mark = session.mark();
    input().chord({key::leftSuper, key::leftShift, digit9});
    session.waitUntilOpen();
    input().drag({100, 100}, {300, 200});
    session.waitForLine(line::saved, mark);
    EXPECT_EQ(session.downloads().size(), 1U);
    session.waitUntilClosed();
    // The old one is nobody's any more.
    session.pressScreenshotShortcut();
    EXPECT_TRUE(
        desktop::staysTrue([&] { return hotKeyPresses() == 1; }, std::chrono::milliseconds(200)));
}

TEST_F(RecorderJourney, a_key_of_another_program_is_recorded_and_does_nothing_there) {
    desktop::XClient other(session.desktop().displayName());
    for (const int locks : {0, 2, 16, 18}) {
        xcb_grab_key(other.get(), 0, other.root(),
                     static_cast<std::uint16_t>(XCB_MOD_MASK_4 | locks), f7, XCB_GRAB_MODE_ASYNC,
                     XCB_GRAB_MODE_ASYNC);
    }
    other.synchronize();
    const std::size_t mark = session.mark();
    record({key::leftSuper, f7}, 98, 256);
    other.synchronize();
    while (const auto event = other.pollEvent()) {
        EXPECT_NE(event->response_type, XCB_KEY_PRESS);
    }
    EXPECT_GE(session.countSince(mark, "❌ Failed to register screenshot shortcut. Status: -9878"),
              1U);
}

TEST_F(RecorderJourney, the_shortcuts_of_the_program_itself_are_recorded_and_open_no_overlay) {
    record({key::leftSuper, key::leftShift, key::digit1}, 18, 768);
    record({key::leftSuper, key::leftShift, key::digit2}, 19, 768);
    EXPECT_TRUE(desktop::staysTrue([&] { return hotKeyPresses() == 0 && !session.isOpen(); },
                                   std::chrono::milliseconds(200)));
}

TEST_F(RecorderJourney, what_closes_a_window_or_quits_the_program_is_recorded_instead) {
    // The first belongs to the window manager, the second to the program's own menu.
    record({key::leftAlt, f4}, 118, 2048);
    record({key::leftControl, q}, 12, 4096);
    record({key::leftControl, comma}, 43, 4096);
    EXPECT_TRUE(session.program().isRunning());
    EXPECT_TRUE(session.windowWithRole("main").has_value());
    EXPECT_FALSE(session.windowWithRole("permissions").has_value());
}

TEST_F(RecorderJourney, escape_leaves_everything_and_the_window_open) {
    const auto before = session.readSettings();
    startRecording();
    input().tap(key::escape);
    session.require("The end of the recording", [&] { return !isRecording(); });
    EXPECT_EQ(session.readSettings(), before);
    EXPECT_EQ(session.activeWindow(), window_);
    session.openOverlay();
}

TEST_F(RecorderJourney, a_second_click_cancels) {
    const auto before = session.readSettings();
    startRecording();
    input().click(middleOf(pill_));
    session.require("The end of the recording", [&] { return !isRecording(); });
    EXPECT_EQ(session.readSettings(), before);
    session.openOverlay();
}

TEST_F(RecorderJourney, modifiers_alone_are_waited_out) {
    // Otherwise control, option and F5 belong to the server itself: it would go to a console.
    run({"setxkbmap", "us", "-option", "srvrkeys:none"});
    startRecording();
    for (const auto modifier : {key::leftShift, key::leftControl, key::leftAlt, key::leftSuper}) {
        input().tap(modifier);
    }
    session.waitUntilStill();
    EXPECT_TRUE(isRecording());
    input().chord({key::leftControl, key::leftAlt, f5});
    waitUntilRecorded(96, 6144);
}

TEST_F(RecorderJourney, the_keys_that_steer_a_window_are_recorded_like_any_other) {
    record({key::space}, 49, 0);
    record({key::returnKey}, 36, 0);
    record({key::tab}, 48, 0);
    record({keypad1}, 83, 0);
    record({leftOfZ}, 10, 0);
    session.waitUntilStill();
    keepPicture("key-10");
}

TEST_F(RecorderJourney, a_held_key_is_recorded_once_and_fires_nothing) {
    run({"xset", "r", "rate", "40", "60"});
    startRecording();
    for (const auto held : {key::leftSuper, key::leftShift, digit9}) {
        input().press(held);
    }
    waitUntilRecorded(25, 768);
    EXPECT_TRUE(
        desktop::staysTrue([&] { return hotKeyPresses() == 0; }, std::chrono::milliseconds(300)));
    input().release(digit9);
    // The modifiers are still down.
    session.require("The hot key of the next press", [&] {
        input().tap(digit9);
        return hotKeyPresses() > 0;
    });
    input().release(key::leftShift);
    input().release(key::leftSuper);
}

TEST_F(RecorderJourney, another_program_gets_its_keys_while_a_recorder_waits) {
    desktop::TestWindow other(session.desktop().displayName(),
                              {.x = 20, .y = 50, .width = 200, .height = 150});
    input().click(middleOf(pill_));
    session.require("The recording", [&] { return isRecording(); });
    input().click({100, 120});
    session.require("The other window becoming active",
                    [&] { return session.activeWindow() == other.id(); });
    std::vector<std::uint8_t> keys;
    session.require("A key for the other window", [&] {
        input().tap(key::a);
        const auto taken = other.takeKeys();
        return std::find(taken.begin(), taken.end(), key::a) != taken.end();
    });
    EXPECT_TRUE(isRecording());
    // Into the window, but onto nothing.
    input().click({pill_.x - 8, pill_.y - 60});
    session.require("The settings window becoming active",
                    [&] { return session.activeWindow() == window_; });
    input().chord({key::leftSuper, key::a});
    waitUntilRecorded(0, 256);
    EXPECT_THAT(other.takeKeys(), IsEmpty());
}

TEST_F(RecorderJourney, an_overlay_opened_by_an_action_has_the_keys_while_it_is_open) {
    startRecording();
    session.desktop().bus({"activate-action", "screenshot"});
    session.waitUntilOpen();
    input().tap(key::escape);
    session.waitUntilClosed();
    session.waitUntilStill();
    EXPECT_TRUE(isRecording());
    input().chord({key::leftSuper, key::leftShift, key::digit2});
    waitUntilRecorded(19, 768);
    EXPECT_EQ(hotKeyPresses(), 1U);
}

TEST_F(RecorderJourney, reset_brings_the_default_back) {
    record({key::a}, 0, 0);
    session.waitUntilStill();
    // 8 points behind the pill, which has given way to it.
    const Place cross{pill_.x + pill_.width - 7, pill_.y + pill_.height / 2};
    input().click(cross);
    waitUntilRecorded(18, 768);
    session.openOverlay();
}

TEST_F(RecorderJourney, the_second_recorder_sets_the_other_shortcut) {
    // "Save to", its folder, "Copy to clipboard", and the pill of the other column.
    for (int step = 0; step < 4; ++step) {
        input().tap(key::tab);
    }
    input().tap(key::returnKey);
    session.require("The recording", [&] { return isRecording(); });
    EXPECT_GT(recordingPill()->x, pill_.x + pill_.width);
    input().chord({key::leftSuper, f7});
    waitUntilRecorded(98, 256, "ocr");
    EXPECT_EQ(setting("screenshotKeyCode"), 18);
}

TEST_F(RecorderJourney, positions_are_recorded_in_every_layout) {
    const std::vector<std::vector<std::string>> layouts{
        {"us"}, {"de"}, {"fr"}, {"es"}, {"ru"}, {"gr"}, {"us", "dvorak"}, {"us", "colemak"},
        {"cz"}, {"tr"}, {"jp"}};
    for (const auto& layout : layouts) {
        SCOPED_TRACE(testing::PrintToString(layout));
        std::vector<std::string> command{"setxkbmap"};
        command.insert(command.end(), layout.begin(), layout.end());
        run(command);
        record({key::leftSuper, key::leftShift, q}, 12, 768);
        record({key::leftSuper, key::leftShift, z}, 6, 768);
        record({key::leftControl, digit9}, 25, 4096);
    }
}

}  // namespace
}  // namespace journeys
