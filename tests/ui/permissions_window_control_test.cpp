#include "ui/permissions_window_control.h"

#include <gmock/gmock.h>

#include <optional>

#include "doubles/doubles.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PermissionsWindowControl : public testing::Test {
  protected:
    PermissionsWindowControl() {
        windows_.recordInto(calls_);
        control_.emplace(ui::PermissionsWindowControl::Mediator{
            .windows = windows_, .mainQueue = queue_, .notifications = notifications_});
    }
    void askToClose() { notifications_.post(app::closePermissionsWindowNotification); }

    doubles::CallLog calls_;
    doubles::FakeWindows windows_;
    doubles::ManualMainQueue queue_;
    app::NotificationCenter notifications_;
    std::optional<ui::PermissionsWindowControl> control_;
};

TEST_F(PermissionsWindowControl, the_window_floats_and_comes_to_the_front_in_a_later_turn) {
    windows_.add("main");
    windows_.add("permissions");
    control_->noteShown();
    EXPECT_THAT(calls_.calls(), IsEmpty());
    queue_.runAll();
    EXPECT_THAT(calls_.calls(), ElementsAre("level: 2 3", "front: 2", "activate"));
}

TEST_F(PermissionsWindowControl, without_a_window_the_program_comes_to_the_front_all_the_same) {
    windows_.add("main");
    control_->noteShown();
    queue_.runAll();
    EXPECT_THAT(calls_.calls(), ElementsAre("activate"));
}

TEST_F(PermissionsWindowControl, a_window_that_is_gone_before_its_turn_is_not_raised) {
    control_->noteShown();
    control_.reset();
    queue_.runAll();
    EXPECT_THAT(calls_.calls(), IsEmpty());
}

TEST_F(PermissionsWindowControl, of_two_windows_the_first_is_raised_and_closed) {
    windows_.add("main");
    windows_.add("a-permissions-1");
    windows_.add("permissions");
    control_->noteShown();
    queue_.runAll();
    askToClose();
    EXPECT_THAT(calls_.calls(), ElementsAre("level: 2 3", "front: 2", "activate", "close: 2"));
    EXPECT_EQ(windows_.list.size(), 2U);
}

TEST_F(PermissionsWindowControl, another_case_of_the_identifier_is_another_window) {
    windows_.add("Permissions");
    askToClose();
    EXPECT_THAT(calls_.calls(), IsEmpty());
}

TEST_F(PermissionsWindowControl, the_other_notification_closes_nothing) {
    windows_.add("permissions");
    notifications_.post(app::openPermissionsWindowNotification);
    EXPECT_THAT(calls_.calls(), IsEmpty());
}

}  // namespace
