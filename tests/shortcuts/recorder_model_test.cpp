#include "shortcuts/recorder_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "shortcuts/recorder_fixture.h"

namespace {

using shortcuts::commandFlag;
using shortcuts::controlFlag;
using shortcuts::KeyVerdict;
using shortcuts::optionFlag;
using shortcuts::shiftFlag;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t returnKey = 36;
constexpr std::uint32_t deleteKey = 51;
constexpr std::uint32_t escape = 53;
constexpr std::uint32_t leftShift = 56;

class RecorderModelTest : public testing::Test {
  protected:
    RecorderModelTest() { keyboard.recordInto(calls); }

    /// A recording that waits for a key, with the records emptied.
    void startRecording() {
        model->toggle();
        calls.clear();
    }

    doubles::CallLog calls;
    doubles::FakeKeyMonitor keyboard;
    fixtures::BoundShortcut bound;
    std::unique_ptr<shortcuts::RecorderModel> model = std::make_unique<shortcuts::RecorderModel>(
        bound.fields(calls), keyboard, [this] { calls.add("change"); });
};

TEST_F(RecorderModelTest, shows_the_bound_pair_and_listens_to_nothing) {
    EXPECT_EQ(model->label(), "⌘⇧1");
    EXPECT_FALSE(model->isRecording());
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(RecorderModelTest, a_click_installs_the_monitor_and_asks_for_a_shortcut) {
    model->toggle();
    EXPECT_TRUE(model->isRecording());
    EXPECT_EQ(model->label(), "Press Shortcut…");
    EXPECT_EQ(model->labelInWords(), "Press Shortcut…");
    EXPECT_THAT(calls.calls(), ElementsAre("monitor install", "change"));
}

TEST_F(RecorderModelTest, a_second_click_cancels) {
    startRecording();
    model->toggle();
    EXPECT_FALSE(model->isRecording());
    EXPECT_EQ(model->label(), "⌘⇧1");
    EXPECT_THAT(calls.calls(), ElementsAre("monitor remove", "change"));
}

TEST_F(RecorderModelTest, a_key_is_written_before_its_modifiers_and_ends_the_recording) {
    startRecording();
    EXPECT_EQ(keyboard.press(20, commandFlag | shiftFlag), KeyVerdict::swallow);
    EXPECT_THAT(calls.calls(),
                ElementsAre("key code 20", "modifiers 768", "monitor remove", "change"));
    EXPECT_EQ(model->label(), "⌘⇧3");
    EXPECT_EQ(model->labelInWords(), "Super+Shift+3");
    EXPECT_EQ(keyboard.press(21, commandFlag), KeyVerdict::pass);
    EXPECT_EQ(bound.keyCode, 20);
}

TEST_F(RecorderModelTest, control_option_f5_is_shown_with_option_first) {
    startRecording();
    keyboard.press(96, controlFlag | optionFlag);
    EXPECT_EQ(bound.keyCode, 96);
    EXPECT_EQ(bound.modifiers, 6144);
    EXPECT_EQ(model->label(), "⌥⌃F5");
}

TEST_F(RecorderModelTest, every_set_of_flags_has_its_mask_and_the_other_flags_none) {
    for (std::uint32_t bits = 0; bits < 256; ++bits) {
        const std::uint32_t flags = bits << 16;
        const std::int64_t mask = ((flags & shortcuts::commandFlag) != 0 ? 256 : 0) |
                                  ((flags & shortcuts::shiftFlag) != 0 ? 512 : 0) |
                                  ((flags & shortcuts::optionFlag) != 0 ? 2048 : 0) |
                                  ((flags & shortcuts::controlFlag) != 0 ? 4096 : 0);
        startRecording();
        keyboard.press(0, flags | 0xFF00FFFF);
        EXPECT_EQ(bound.modifiers, mask) << flags;
    }
}

TEST_F(RecorderModelTest, escape_ends_the_recording_and_goes_no_further) {
    startRecording();
    EXPECT_EQ(keyboard.press(escape), KeyVerdict::swallow);
    EXPECT_FALSE(model->isRecording());
    EXPECT_THAT(calls.calls(), ElementsAre("monitor remove", "change"));
    EXPECT_EQ(keyboard.press(escape), KeyVerdict::pass);
}

TEST_F(RecorderModelTest, escape_with_modifiers_ends_the_recording_too) {
    startRecording();
    EXPECT_EQ(keyboard.press(escape, commandFlag | controlFlag), KeyVerdict::swallow);
    EXPECT_EQ(bound.modifiers, 768);
    EXPECT_FALSE(model->isRecording());
}

TEST_F(RecorderModelTest, shift_alone_passes_and_the_recording_goes_on) {
    startRecording();
    EXPECT_EQ(keyboard.changeFlags(leftShift, shiftFlag), KeyVerdict::pass);
    EXPECT_EQ(keyboard.changeFlags(leftShift, 0), KeyVerdict::pass);
    EXPECT_TRUE(model->isRecording());
    EXPECT_THAT(calls.calls(), IsEmpty());
    keyboard.press(0);
    EXPECT_EQ(model->label(), "A");
}

TEST_F(RecorderModelTest, a_bare_key_delete_and_return_are_recorded_like_any_other) {
    for (const std::uint32_t key : {0U, deleteKey, returnKey}) {
        startRecording();
        EXPECT_EQ(keyboard.press(key), KeyVerdict::swallow);
        EXPECT_EQ(bound.keyCode, key);
        EXPECT_EQ(bound.modifiers, 0);
    }
}

TEST_F(RecorderModelTest, the_pair_that_is_bound_already_is_written_again) {
    startRecording();
    keyboard.press(18, commandFlag | shiftFlag);
    EXPECT_EQ(calls.count("key code 18"), 1);
    EXPECT_EQ(calls.count("modifiers 768"), 1);
}

TEST_F(RecorderModelTest, keypad_1_looks_like_1_and_the_key_left_of_z_is_key_10) {
    startRecording();
    keyboard.press(83, shortcuts::numericPadFlag);
    EXPECT_EQ(bound.keyCode, 83);
    EXPECT_EQ(model->label(), "1");
    startRecording();
    keyboard.press(10);
    EXPECT_EQ(model->label(), "Key 10");
}

TEST_F(RecorderModelTest, keys_pressed_in_another_program_are_waited_out) {
    startRecording();
    keyboard.hasInput = false;
    keyboard.press(20);
    EXPECT_TRUE(model->isRecording());
    keyboard.hasInput = true;
    keyboard.press(21);
    EXPECT_EQ(bound.keyCode, 21);
}

TEST_F(RecorderModelTest, an_update_in_the_middle_of_a_write_changes_nothing) {
    shortcuts::RecorderFields fields = bound.fields(calls);
    fields.keyCode.set = [this, set = fields.keyCode.set](std::int64_t value) {
        model->update();
        set(value);
        model->update();
    };
    model = std::make_unique<shortcuts::RecorderModel>(fields, keyboard,
                                                       [this] { calls.add("change"); });
    startRecording();
    EXPECT_EQ(keyboard.press(20, commandFlag), KeyVerdict::swallow);
    EXPECT_THAT(calls.calls(),
                ElementsAre("key code 20", "modifiers 256", "monitor remove", "change"));
}

TEST_F(RecorderModelTest, there_is_something_to_reset_only_when_the_pair_is_another) {
    EXPECT_FALSE(model->canReset());
    bound.modifiers = 256;
    EXPECT_TRUE(model->canReset());
    model->reset();
    EXPECT_THAT(calls.calls(), ElementsAre("reset"));
    EXPECT_FALSE(model->canReset());
}

TEST_F(RecorderModelTest, there_is_nothing_to_reset_without_an_action) {
    shortcuts::RecorderFields fields = bound.fields(calls);
    fields.resetAction = {};
    bound.keyCode = 20;
    model = std::make_unique<shortcuts::RecorderModel>(fields, keyboard, [] {});
    EXPECT_FALSE(model->canReset());
    model->reset();
    EXPECT_EQ(bound.keyCode, 20);
}

TEST_F(RecorderModelTest, a_reset_leaves_a_recording_as_it_is) {
    bound.keyCode = 20;
    startRecording();
    model->reset();
    EXPECT_TRUE(model->isRecording());
    EXPECT_EQ(keyboard.installedCount(), 1U);
}

TEST_F(RecorderModelTest, cancelling_ends_a_recording_and_nothing_else) {
    model->cancel();
    EXPECT_THAT(calls.calls(), IsEmpty());
    startRecording();
    model->cancel();
    EXPECT_THAT(calls.calls(), ElementsAre("monitor remove", "change"));
    EXPECT_EQ(bound.keyCode, 18);
}

TEST_F(RecorderModelTest, is_gone_without_a_trace_while_it_records) {
    startRecording();
    model.reset();
    EXPECT_THAT(calls.calls(), ElementsAre("monitor remove"));
    EXPECT_EQ(keyboard.press(20), KeyVerdict::pass);
}

TEST_F(RecorderModelTest, of_two_that_record_the_newer_takes_the_first_key) {
    fixtures::BoundShortcut other;
    shortcuts::RecorderModel second(other.fields(calls), keyboard, [] {});
    model->toggle();
    second.toggle();
    keyboard.press(20);
    EXPECT_EQ(bound.keyCode, 18);
    EXPECT_EQ(other.keyCode, 20);
    keyboard.press(21);
    EXPECT_EQ(bound.keyCode, 21);
    EXPECT_EQ(other.keyCode, 20);
}

}  // namespace
