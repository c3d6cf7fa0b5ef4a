#include "app/notification_center.h"

#include <gtest/gtest.h>

#include <memory>

TEST(NotificationCenter, calls_the_observers_of_a_name_in_their_order) {
    app::NotificationCenter center;
    std::string order;
    const auto first = center.observe("a", [&] { order += "1"; });
    const auto other = center.observe("b", [&] { order += "x"; });
    const auto second = center.observe("a", [&] { order += "2"; });
    center.post("a");
    EXPECT_EQ(order, "12");
}

TEST(NotificationCenter, a_post_without_observers_has_no_effect) {
    app::NotificationCenter().post("a");
}

TEST(NotificationCenter, an_observer_may_end_itself_or_begin_another_while_it_runs) {
    app::NotificationCenter center;
    int calls = 0;
    app::NotificationCenter::Observation second;
    app::NotificationCenter::Observation first = center.observe("a", [&] {
        ++calls;
        first = {};
        second = center.observe("a", [&] { calls += 10; });
    });
    center.post("a");
    EXPECT_EQ(calls, 1);
    center.post("a");
    EXPECT_EQ(calls, 11);
}

TEST(NotificationCenter, an_observation_may_outlive_the_center) {
    auto center = std::make_unique<app::NotificationCenter>();
    const auto observation = center->observe("a", [] {});
    center.reset();
}

TEST(NotificationNames, are_what_other_parts_of_the_program_listen_to) {
    EXPECT_STREQ(app::openPermissionsWindowNotification, "OpenPermissionsWindow");
    EXPECT_STREQ(app::closePermissionsWindowNotification, "ClosePermissionsWindow");
}
