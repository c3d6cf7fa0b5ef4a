#include "platform/x11/late_requests.h"

#include <gtest/gtest.h>

namespace {

using platform::x11::LateRequests;

struct LateRequestsTest : testing::Test {
    LateRequests requests;
    int sent = 0;

    void add() {
        requests.add([this] { ++sent; });
    }
};

TEST_F(LateRequestsTest, are_sent_at_once_when_nothing_is_waited_for) {
    add();
    EXPECT_EQ(sent, 1);
}

TEST_F(LateRequestsTest, wait_for_the_end_of_the_last_hold) {
    auto first = requests.hold();
    auto second = requests.hold();
    add();
    first.reset();
    EXPECT_EQ(sent, 0);
    second.reset();
    EXPECT_EQ(sent, 1);
}

TEST_F(LateRequestsTest, are_sent_when_what_was_waited_for_has_been_sent) {
    const auto hold = requests.hold();
    add();
    requests.sendAll();
    EXPECT_EQ(sent, 1);
}

TEST_F(LateRequestsTest, are_sent_when_the_clipboard_is_owned_if_nothing_else_is_waited_for) {
    const auto hold = requests.hold(LateRequests::Until::claimed);
    add();
    requests.noteClaim();
    EXPECT_EQ(sent, 1);
}

TEST_F(LateRequestsTest, wait_past_the_claim_when_one_hold_is_for_the_delivery) {
    auto claim = requests.hold(LateRequests::Until::claimed);
    auto delivery = requests.hold(LateRequests::Until::delivered);
    add();
    requests.noteClaim();
    EXPECT_EQ(sent, 0);
    claim.reset();
    delivery.reset();
    EXPECT_EQ(sent, 1);
}

TEST_F(LateRequestsTest, a_hold_for_the_delivery_does_not_lengthen_a_later_one) {
    requests.hold(LateRequests::Until::delivered).reset();
    const auto claim = requests.hold(LateRequests::Until::claimed);
    add();
    requests.noteClaim();
    EXPECT_EQ(sent, 1);
}

TEST_F(LateRequestsTest, are_sent_once) {
    {
        const auto hold = requests.hold();
        add();
        requests.sendAll();
    }
    EXPECT_EQ(sent, 1);
}

TEST_F(LateRequestsTest, of_later_holds_wait_for_those) {
    requests.hold().reset();
    const auto hold = requests.hold();
    add();
    EXPECT_EQ(sent, 0);
}

TEST(LateRequests, may_end_before_their_holds) {
    LateRequests::Hold hold;
    int sent = 0;
    {
        LateRequests requests;
        hold = requests.hold();
        requests.add([&] { ++sent; });
    }
    hold.reset();
    EXPECT_EQ(sent, 0);
}

}  // namespace
