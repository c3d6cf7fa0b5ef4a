#include "shortcuts/shortcut_ns_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "doubles/call_log.h"
#include "doubles/fake_key_monitor.h"

namespace {

using shortcuts::KeyEvent;
using shortcuts::KeyVerdict;
using shortcuts::ShortcutNSView;
using Consumed = ShortcutNSView::Consumed;
using Recording = ShortcutNSView::Recording;
using testing::ElementsAre;
using testing::IsEmpty;

class ShortcutNSViewTest : public testing::Test {
  protected:
    ShortcutNSViewTest() { keyboard.recordInto(calls); }

    ShortcutNSView::OnEvent say(const std::string& word, Consumed consumed) {
        return [this, word, consumed](const KeyEvent&) {
            calls.add(word);
            return consumed;
        };
    }

    doubles::CallLog calls;
    doubles::FakeKeyMonitor keyboard;
    std::unique_ptr<ShortcutNSView> view = std::make_unique<ShortcutNSView>(keyboard);
};

TEST_F(ShortcutNSViewTest, installs_nothing_before_it_records) {
    view->setRecording(Recording::no, say("event", Consumed::yes));
    EXPECT_THAT(calls.calls(), IsEmpty());
    EXPECT_EQ(keyboard.press(0), KeyVerdict::pass);
}

TEST_F(ShortcutNSViewTest, never_installs_a_second_monitor) {
    view->setRecording(Recording::yes, say("event", Consumed::yes));
    view->setRecording(Recording::yes, say("event", Consumed::yes));
    EXPECT_THAT(calls.calls(), ElementsAre("monitor install"));
}

TEST_F(ShortcutNSViewTest, removes_its_monitor_once_when_the_recording_ends) {
    view->setRecording(Recording::yes, say("event", Consumed::yes));
    view->setRecording(Recording::no, say("event", Consumed::yes));
    view->setRecording(Recording::no, say("event", Consumed::yes));
    EXPECT_THAT(calls.calls(), ElementsAre("monitor install", "monitor remove"));
    EXPECT_EQ(keyboard.press(0), KeyVerdict::pass);
}

TEST_F(ShortcutNSViewTest, installs_anew_for_the_next_recording) {
    view->setRecording(Recording::yes, say("event", Consumed::yes));
    view->setRecording(Recording::no, {});
    view->setRecording(Recording::yes, say("event", Consumed::yes));
    EXPECT_EQ(keyboard.installCount, 2);
    EXPECT_EQ(keyboard.press(0), KeyVerdict::swallow);
}

TEST_F(ShortcutNSViewTest, asks_the_callback_of_the_last_update) {
    view->setRecording(Recording::yes, say("old", Consumed::yes));
    view->setRecording(Recording::yes, say("fresh", Consumed::yes));
    calls.clear();
    keyboard.press(0);
    EXPECT_THAT(calls.calls(), ElementsAre("fresh"));
}

TEST_F(ShortcutNSViewTest, swallows_what_the_callback_consumes_and_lets_the_rest_pass) {
    view->setRecording(Recording::yes, say("event", Consumed::yes));
    EXPECT_EQ(keyboard.press(0), KeyVerdict::swallow);
    view->setRecording(Recording::yes, say("event", Consumed::no));
    EXPECT_EQ(keyboard.press(0), KeyVerdict::pass);
}

TEST_F(ShortcutNSViewTest, lets_everything_pass_without_a_callback) {
    view->setRecording(Recording::yes, {});
    EXPECT_EQ(keyboard.press(0), KeyVerdict::pass);
}

TEST_F(ShortcutNSViewTest, gives_the_event_on_as_it_came) {
    std::vector<KeyEvent> events;
    view->setRecording(Recording::yes, [&](const KeyEvent& event) {
        events.push_back(event);
        return Consumed::no;
    });
    keyboard.changeFlags(56, shortcuts::shiftFlag);
    keyboard.press(96, shortcuts::controlFlag);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].type, shortcuts::KeyEventType::flagsChanged);
    EXPECT_EQ(events[1].type, shortcuts::KeyEventType::keyDown);
    EXPECT_EQ(events[1].keyCode, 96U);
    EXPECT_EQ(events[1].modifierFlags, shortcuts::controlFlag);
}

TEST_F(ShortcutNSViewTest, removes_its_monitor_when_it_is_destroyed) {
    view->setRecording(Recording::yes, say("event", Consumed::yes));
    view.reset();
    EXPECT_THAT(calls.calls(), ElementsAre("monitor install", "monitor remove"));
    EXPECT_EQ(keyboard.press(0), KeyVerdict::pass);
}

TEST_F(ShortcutNSViewTest, may_be_updated_and_ended_by_its_own_callback) {
    int events = 0;
    // More than fits into the callback itself: what is replaced while it runs is really freed.
    const std::vector<int> ballast(100, 7);
    view->setRecording(Recording::yes, [this, &events, ballast](const KeyEvent&) {
        view->setRecording(Recording::yes, {});
        view->setRecording(Recording::no, {});
        events += ballast.at(99);
        return Consumed::yes;
    });
    EXPECT_EQ(keyboard.press(0), KeyVerdict::swallow);
    EXPECT_EQ(keyboard.press(0), KeyVerdict::pass);
    EXPECT_EQ(events, 7);
}

}  // namespace
