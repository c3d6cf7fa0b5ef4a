#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "desktop/test_window.h"
#include "desktop/wait.h"
#include "platform/x11/monitored_window.h"

namespace fixtures {

/// A focused window with a key monitor, a hot key of this program (command, shift and 1), and hands
/// on the keys.
class KeyMonitorFixture : public testing::Test {
  protected:
    using KeyEvent = shortcuts::KeyEvent;
    using KeyEventType = shortcuts::KeyEventType;
    using KeyVerdict = shortcuts::KeyVerdict;
    using OtherProgram = test::OtherProgram;

    static constexpr std::uint32_t keyOne = 18;
    static constexpr std::uint32_t commandShift =
        shortcuts::commandModifier | shortcuts::shiftModifier;

    KeyMonitorFixture() {
        keyboard_.hotKeys().registerHotKey(keyOne, commandShift, {1, 1});
        keyboard_.hotKeys().installEventHandler([this](shortcuts::EventHotKeyID) {
            ++hotKeyPresses_;
            return shortcuts::noErr;
        });
        settle();
    }

    /// As a recorder does: swallows the first key-down and is gone with it.
    void record() {
        monitor_ = window_.monitor().install([this](const KeyEvent& event) {
            events_.push_back(event);
            if (event.type != KeyEventType::keyDown) {
                return KeyVerdict::pass;
            }
            monitor_.reset();
            return KeyVerdict::swallow;
        });
        settle();
    }
    /// Sees everything, and stays.
    void watch(KeyVerdict verdict) {
        monitor_ = window_.monitor().install([this, verdict](const KeyEvent& event) {
            events_.push_back(event);
            return verdict;
        });
        settle();
    }
    void settle() {
        window_.settle();
        // What the answer of one connection sets off on the other.
        window_.settle();
    }
    bool settleUntil(const std::function<bool()>& condition) {
        return desktop::waitUntil([&] {
            settle();
            return condition();
        });
    }
    void chord(const std::vector<std::uint8_t>& keycodes) {
        keyboard_.hands().chord(keycodes);
        settle();
    }
    void press(std::uint8_t keycode) {
        keyboard_.hands().press(keycode);
        settle();
    }
    void release(std::uint8_t keycode) {
        keyboard_.hands().release(keycode);
        settle();
    }
    bool isKeyboardFree() {
        OtherProgram asking(keyboard_.displayName());
        if (asking.grabKeyboard() != OtherProgram::Answer::granted) {
            return false;
        }
        asking.ungrabKeyboard();
        return true;
    }
    desktop::TestWindow makeOtherWindow() {
        return desktop::TestWindow(
            keyboard_.displayName(),
            {.x = 300,
             .width = 200,
             .management = desktop::TestWindowOptions::Management::unmanaged});
    }
    static int keyPressesOf(OtherProgram& program) {
        program.client().synchronize();
        int presses = 0;
        while (const auto event = program.client().pollEvent()) {
            presses += event->response_type == XCB_KEY_PRESS ? 1 : 0;
        }
        return presses;
    }
    std::vector<KeyEvent> keyDowns() const {
        std::vector<KeyEvent> found;
        for (const KeyEvent& event : events_) {
            if (event.type == KeyEventType::keyDown) {
                found.push_back(event);
            }
        }
        return found;
    }

    test::PrivateKeyboard keyboard_;
    test::MonitoredWindow window_{keyboard_};
    std::unique_ptr<shortcuts::InstalledKeyMonitor> monitor_;
    std::vector<KeyEvent> events_;
    int hotKeyPresses_ = 0;
};

}  // namespace fixtures
