// Displays that come, go and move before, during and after a selection.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>

#include "desktop/x_resources.h"
#include "journeys/desktops_table.h"
#include "journeys/session.h"

namespace journeys {
namespace {

using desktop::difference;
using desktop::Output;

const std::vector<Output> one{{0, 0, 1280, 1024, 0}};
const std::vector<Output> two{{0, 0, 1280, 1024, 0}, {1280, 200, 800, 600, 1}};
const std::vector<Output> three{
    {0, 0, 1280, 1024, 0}, {1280, 200, 800, 600, 1}, {2080, 0, 640, 480, 2}};
const std::vector<Output> moved{{0, 0, 1280, 1024, 0}, {1280, 400, 800, 600, 1}};
const std::vector<Output> smaller{{0, 0, 1280, 1024, 0}, {1280, 200, 640, 480, 1}};

class HotPlug : public testing::TestWithParam<desktop::Compositor> {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "A server with several displays needs root.";
        }
        session = std::make_unique<Session>(
            desktop::DesktopOptions{.outputs = two, .compositor = GetParam()});
        session->writeSettings({{"copyToClipboard", false}});
        session->start();
    }

    [[nodiscard]] std::string setUp(const std::string& text) const {
        return text + (GetParam() == desktop::Compositor::none ? "" : ", with a compositor");
    }

    void open(const std::vector<Output>& displays) {
        std::vector<Area> expected;
        for (const Output& each : displays) {
            expected.push_back({each.x, each.y, each.width, each.height});
        }
        const std::size_t before = session->mark();
        session->pressScreenshotShortcut();
        session->program().waitForLine(line::showSelectionCalled, before);
        session->require("An overlay that covers each display",
                         [&] { return session->overlayAreas() == expected; });
    }
    void waitUntilClosed() {
        session->require("The closing of the overlay",
                         [&] { return session->overlayAreas().empty(); });
    }

    /// A drag on the last display gives its pixels, and nothing of an overlay stays behind.
    void checkSelection(const std::vector<Output>& displays) {
        const Output& last = displays.back();
        const Area area{last.x + 30, last.y + 40, 300, 200};
        session->require("The wallpaper of all displays", [&] {
            return session->screen(area) ==
                   session->wallpaper().cut(area.x, area.y, area.width, area.height);
        });
        open(displays);
        const std::size_t before = session->mark();
        session->input().drag({area.x, area.y}, {area.x + area.width, area.y + area.height});
        const auto file = session->waitForLine(line::saved, before);
        EXPECT_EQ(difference(session->wallpaper().cut(area.x, area.y, area.width, area.height),
                             desktop::decodePng(desktop::readFile(file)).picture),
                  "equal");
        waitUntilClosed();
        std::filesystem::remove(file);
    }

    struct Change {
        const char* what;
        std::vector<Output> displays;
        std::optional<std::size_t> primary = 0;
    };
    const std::vector<Change> changes{{"one goes", one},
                                      {"one comes", three},
                                      {"one moves", moved},
                                      {"one gets another size", smaller},
                                      {"another one becomes primary", two, 1}};

    /// `happens` leaves the displays as the change has them; what is selected there is right.
    void forEachChange(const std::function<void(const Change& change)>& happens) {
        for (const Change& change : changes) {
            SCOPED_TRACE(change.what);
            happens(change);
            checkSelection(change.displays);
            session->arrange(two);
        }
    }

    std::unique_ptr<Session> session;
};

INSTANTIATE_TEST_SUITE_P(Desktops, HotPlug,
                         testing::Values(desktop::Compositor::none, desktop::Compositor::picom),
                         [](const auto& parameter) {
                             return parameter.param == desktop::Compositor::none ? "frozen"
                                                                                 : "live";
                         });

TEST_P(HotPlug, before_a_selection_counts_at_its_opening) {
    const TableRow row(
        TableGroup::displays,
        {.setUp = setUp("Hot-plug before a selection"),
         .tested = "a display goes, comes, moves, gets another size, becomes primary: "
                   "overlay frames and pixels of the next selection"});
    forEachChange(
        [this](const Change& change) { session->arrange(change.displays, change.primary); });
}

TEST_P(HotPlug, while_the_overlay_is_open_closes_it_and_the_next_one_is_right) {
    const TableRow row(
        TableGroup::displays,
        {.setUp = setUp("Hot-plug while the overlay is open"),
         .tested = "the same five changes: the overlay closes without a picture, the "
                   "next selection",
         .result = "closed; exact"});
    forEachChange([this](const Change& change) {
        open(two);
        const std::size_t before = session->mark();
        session->desktop().server().arrange(change.displays, change.primary);
        waitUntilClosed();
        EXPECT_EQ(session->countSince(before, line::saved), 0U);
        session->arrange(change.displays, change.primary);
    });
}

TEST_P(HotPlug, in_the_middle_of_a_drag_ends_it_without_a_picture) {
    const TableRow row(
        TableGroup::displays,
        {.setUp = setUp("Hot-plug in the middle of a drag"),
         .tested = "the same five changes with the button held: no picture, the next "
                   "selection",
         .result = "closed; exact"});
    forEachChange([this](const Change& change) {
        open(two);
        const std::size_t before = session->mark();
        session->input().moveTo({100, 100});
        session->input().pressButton();
        session->input().moveInSteps({100, 100}, {500, 400});
        session->desktop().server().arrange(change.displays, change.primary);
        waitUntilClosed();
        session->input().moveInSteps({500, 400}, {600, 500});
        session->input().releaseButton();
        EXPECT_TRUE(
            desktop::staysTrue([&] { return session->countSince(before, line::saved) == 0; },
                               std::chrono::milliseconds(100)));
        EXPECT_EQ(session->countSince(before, "Error"), 0U);
        session->arrange(change.displays, change.primary);
    });
}

TEST_P(HotPlug, right_after_a_selection_leaves_a_program_that_takes_the_next_one) {
    const TableRow row(
        TableGroup::displays,
        {.setUp = setUp("Hot-plug right after the release"),
         .tested = "the display of the selection goes at once: the program lives, the "
                   "next selection"});
    for (int round = 0; round < 5; ++round) {
        open(two);
        const std::size_t before = session->mark();
        session->input().drag({1380, 300}, {1680, 500});
        session->desktop().server().arrange(one);
        waitUntilClosed();
        // The display may have been read before it went; otherwise one line says why not.
        session->require("A picture or the reason why there is none", [&] {
            return session->countSince(before, line::saved) + session->countSince(before, "Error") +
                       session->countSince(before, "No display found for selection") ==
                   1;
        });
        session->arrange(one);
        checkSelection(one);
        session->arrange(two);
    }
    EXPECT_TRUE(session->program().isRunning());
}

TEST_P(HotPlug, leaves_nothing_behind_in_the_server) {
    const TableRow row(TableGroup::displays,
                       {.setUp = setUp("Hot-plug eight times while the overlay is open"),
                        .tested = "what the X server keeps for the program, before and after",
                        .result = "the same"});
    const auto plug = [&] {
        open(two);
        session->input().moveTo({100, 100});
        session->input().pressButton();
        session->input().moveInSteps({100, 100}, {500, 400});
        session->desktop().server().arrange(one);
        waitUntilClosed();
        session->input().releaseButton();
        session->arrange(two);
    };
    const auto resources = [&] {
        return desktop::resourcesOf(session->desktop().client(), session->program().pid());
    };
    const auto stableResources = [&] {
        auto last = resources();
        desktop::require("The end of the closing", [&] {
            const auto before = std::exchange(last, resources());
            return before == last && desktop::staysTrue([&] { return resources() == last; },
                                                        std::chrono::milliseconds(400));
        });
        return last;
    };
    // What is made at the first use stays.
    plug();
    plug();
    const auto before = stableResources();
    EXPECT_GT(before.count("WINDOW"), 0U);
    for (int round = 0; round < 8; ++round) {
        plug();
    }
    EXPECT_EQ(stableResources(), before);
}

}  // namespace
}  // namespace journeys
