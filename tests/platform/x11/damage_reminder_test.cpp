// What a compositor hears of that says only after its frame what it has seen before it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/damage.h>

#include <utility>
#include <vector>

#include "overlay_stage_rig.h"
#include "pretended_compositor.h"

namespace {

using platform::x11::NativeRect;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::display;
using tests::region;

constexpr NativeRect otherRegion{500, 420, 200, 100};

/// The test in the place of a compositor that watches the overlay's window, and of a window
/// manager, which is the same program or another one.
class DamageReminderTest : public testing::Test {
  protected:
    enum class Manager { compositor, otherProgram };

    void open(Manager manager) {
        auto* const asking = manager == Manager::compositor ? client().get() : other_.get();
        const auto owner = manager == Manager::compositor
                               ? rig.below()
                               : tests::makeWindow(asking, {.frame = {0, 0, 1, 1}});
        xcb_set_selection_owner(asking, owner, client().atom("WM_S0"), XCB_CURRENT_TIME);
        other_.synchronize();
        window = rig.openLive();
        (void)rig.connection().serverTime();
        xcb_discard_reply(client().get(),
                          xcb_damage_query_version(client().get(), XCB_DAMAGE_MAJOR_VERSION,
                                                   XCB_DAMAGE_MINOR_VERSION)
                              .sequence);
        damage = xcb_generate_id(client().get());
        xcb_damage_create(client().get(), damage, window, XCB_DAMAGE_REPORT_LEVEL_BOUNDING_BOX);
        // What the window shows from the beginning.
        acknowledge();
        (void)hear();
    }
    desktop::XClient& client() { return rig.desktop().client(); }

    void paint(const NativeRect& area) {
        tests::fill(rig.connection().get(), window, area, tests::overlayColor);
        rig.stage().windowPainted(window, area);
        (void)rig.connection().serverTime();
    }
    /// What the compositor has been told since the last call: the damage. Keeps the questions.
    std::vector<NativeRect> hear() {
        client().synchronize();
        const auto* extension = xcb_get_extension_data(client().get(), &xcb_damage_id);
        std::vector<NativeRect> heard;
        while (const auto event = client().pollEvent()) {
            const int type = event->response_type & 0x7F;
            if (type == extension->first_event + XCB_DAMAGE_NOTIFY) {
                const auto& area =
                    reinterpret_cast<const xcb_damage_notify_event_t*>(event.get())->area;
                heard.push_back({area.x, area.y, area.width, area.height});
            } else if (type == XCB_SELECTION_REQUEST) {
                questions.push_back(
                    *reinterpret_cast<const xcb_selection_request_event_t*>(event.get()));
            }
        }
        return heard;
    }
    /// It has seen all that it was told of.
    void acknowledge() {
        xcb_damage_subtract(client().get(), damage, XCB_NONE, XCB_NONE);
        client().synchronize();
    }
    /// Refuses every question that it has heard, and gives what the overlay's program does then
    /// the time to happen.
    void answer() {
        for (const auto& question : std::exchange(questions, {})) {
            xcb_selection_notify_event_t refusal{};
            refusal.response_type = XCB_SELECTION_NOTIFY;
            refusal.requestor = question.requestor;
            refusal.selection = question.selection;
            refusal.target = question.target;
            xcb_send_event(client().get(), 0, question.requestor, 0,
                           reinterpret_cast<const char*>(&refusal));
        }
        client().synchronize();
        (void)rig.connection().serverTime();
        rig.connection().dispatchPendingEvents();
        (void)rig.connection().serverTime();
    }

    tests::OverlayStageRig rig{desktop::Compositor::none};
    tests::PretendedCompositor compositor{rig};
    desktop::XClient other_{rig.desktop().displayName()};
    xcb_window_t window = XCB_WINDOW_NONE;
    xcb_damage_damage_t damage = XCB_NONE;
    std::vector<xcb_selection_request_event_t> questions;
};

TEST_F(DamageReminderTest, what_is_painted_while_a_frame_is_composed_is_told_after_it) {
    open(Manager::compositor);
    paint(display);
    EXPECT_THAT(hear(), ElementsAre(display));
    answer();
    compositor.compose(window, display);
    paint(region);
    acknowledge();
    EXPECT_THAT(hear(), IsEmpty());
    answer();
    EXPECT_THAT(hear(), ElementsAre(region));
}

TEST_F(DamageReminderTest, many_paintings_cost_one_question_at_a_time) {
    open(Manager::compositor);
    paint(display);
    paint(region);
    paint(otherRegion);
    EXPECT_THAT(hear(), ElementsAre(display));
    EXPECT_EQ(questions.size(), 1U);
    acknowledge();
    answer();
    EXPECT_THAT(hear(), ElementsAre(display));
    acknowledge();
    EXPECT_EQ(questions.size(), 1U);
    answer();
    EXPECT_THAT(hear(), ElementsAre(boundingBox(region, otherRegion)));
    EXPECT_THAT(questions, IsEmpty());
}

TEST_F(DamageReminderTest, a_compositor_that_is_not_the_window_manager_is_asked_nothing) {
    open(Manager::otherProgram);
    paint(display);
    EXPECT_THAT(hear(), ElementsAre(display));
    acknowledge();
    EXPECT_THAT(questions, IsEmpty());
    other_.synchronize();
    while (const auto event = other_.pollEvent()) {
        EXPECT_NE(event->response_type & 0x7F, XCB_SELECTION_REQUEST);
    }
    EXPECT_THAT(hear(), IsEmpty());
}

TEST_F(DamageReminderTest, nothing_is_told_while_a_capture_waits_or_of_a_closed_window) {
    open(Manager::compositor);
    paint(display);
    EXPECT_THAT(hear(), ElementsAre(display));
    acknowledge();
    rig.stage().whenClear(region, [] {});
    answer();
    EXPECT_THAT(hear(), IsEmpty());
    paint(region);
    (void)hear();
    acknowledge();
    rig.stage().windowClosed(window);
    (void)rig.connection().serverTime();
    (void)hear();
    acknowledge();
    answer();
    EXPECT_THAT(hear(), IsEmpty());
}

TEST_F(DamageReminderTest, an_answer_to_what_no_longer_matters_is_not_taken_for_a_later_one) {
    open(Manager::compositor);
    paint(display);
    EXPECT_THAT(hear(), ElementsAre(display));
    rig.stage().whenClear(region, [] {});
    paint(otherRegion);
    acknowledge();
    answer();
    EXPECT_THAT(hear(), IsEmpty());
    answer();
    EXPECT_THAT(hear(), ElementsAre(otherRegion));
}

}  // namespace
