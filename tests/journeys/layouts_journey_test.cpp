// The arrangements of displays that people have: the overlay covers each one to the pixel, a drag
// gives every pixel of it, and a window is highlighted on exactly its own pixels.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "journeys/desktops_table.h"
#include "journeys/overlay_colors.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::difference;
using desktop::Output;

/// The scale of each output, by its number: what QT_SCREEN_SCALE_FACTORS says below.
constexpr double scales[] = {1, 1, 1, 1, 1.25, 1.25, 1.5, 1.5, 1.75, 1.75, 2, 2};
constexpr int at1 = 0;
constexpr int at125 = 4;
constexpr int at150 = 6;
constexpr int at175 = 8;
constexpr int at200 = 10;

std::string scaleFactors() {
    std::string text;
    for (std::size_t number = 0; number < std::size(scales); ++number) {
        char factor[32];
        std::snprintf(factor, sizeof factor, "DUMMY%zu=%g;", number, scales[number]);
        text += factor;
    }
    text.pop_back();
    return text;
}

struct Layout {
    const char* setUp;
    std::vector<Output> outputs;
    std::optional<std::size_t> primary = 0;
    /// The outputs that are no displays of their own: they show a part of another one.
    std::size_t mirrors = 0;
};

Area areaOf(const Output& output) {
    return {output.x, output.y, output.width, output.height};
}

double scaleOf(const Output& output) {
    return scales[output.number.value()];
}

Output display(int number, int x, int y, int width, int height) {
    return {x, y, width, height, number};
}

/// A window on each display, of this process; smaller than any of them.
struct Windows {
    explicit Windows(Session& session, const std::vector<Output>& displays) {
        std::uint32_t seed = 20;
        for (const Output& each : displays) {
            windows.push_back(std::make_unique<desktop::TestWindow>(
                session.desktop().displayName(),
                desktop::TestWindowOptions{
                    .x = each.x + 61,
                    .y = each.y + 147,
                    .width = 163,
                    .height = 141,
                    .decoration = desktop::TestWindowOptions::Decoration::none,
                    .seed = ++seed}));
        }
        windows.back()->focus();
        session.waitUntilStill();
    }
    std::vector<std::unique_ptr<desktop::TestWindow>> windows;
};

/// "equal" when `shown` is `before` with the highlight on `window` and dimming elsewhere.
std::string highlightDifference(const Picture& before, const Picture& shown, const Area& window) {
    for (int y = 0; y < before.height; ++y) {
        for (int x = 0; x < before.width; ++x) {
            const bool isInside = window.x <= x && x < window.x + window.width && window.y <= y &&
                                  y < window.y + window.height;
            const auto matches = isInside ? isHighlighted : isDimmed;
            if (!matches(shown.at(x, y), before.at(x, y))) {
                return "the pixel (" + std::to_string(x) + ", " + std::to_string(y) + ") is not " +
                       (isInside ? "highlighted" : "dimmed");
            }
        }
    }
    return "equal";
}

class Layouts : public testing::Test {
  protected:
    void startWith(const Layout& first, desktop::Compositor compositor) {
        session = std::make_unique<Session>(
            desktop::DesktopOptions{.outputs = first.outputs,
                                    .compositor = compositor,
                                    .environment = {{"QT_SCREEN_SCALE_FACTORS", scaleFactors()}}});
        session->writeSettings({{"copyToClipboard", false}, {"captureShadows", false}});
        session->start();
    }

    void open(const std::vector<Output>& displays) {
        std::vector<Area> expected;
        for (const Output& each : displays) {
            expected.push_back(areaOf(each));
        }
        std::sort(expected.begin(), expected.end());
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

    /// From the upper left pixel to the lower right one.
    void checkRegion(const std::vector<Output>& displays, const Output& on) {
        const double scale = scaleOf(on);
        const Area area = areaOf(on);
        const Picture expected = session->screen(area);
        open(displays);
        const std::size_t before = session->mark();
        session->input().drag({area.x, area.y}, {area.x + area.width - 1, area.y + area.height - 1},
                              3);
        const auto file = session->waitForLine(line::saved, before);
        const auto png = desktop::decodePng(desktop::readFile(file));
        EXPECT_EQ(difference(expected, png.picture), "equal");
        const auto density = static_cast<std::uint32_t>(std::lround(scale * 72 / 0.0254));
        EXPECT_EQ(png.density, (desktop::Png::Density{density, density}));
        double x = -1;
        double y = -1;
        std::sscanf(session->waitForLine(line::mouseDown, before).c_str(), "(%lf, %lf)", &x, &y);
        EXPECT_EQ(x, 0);
        EXPECT_NEAR(y, area.height / scale, 1e-6);
        waitUntilClosed();
        std::filesystem::remove(file);
    }

    void checkWindows(const std::vector<Output>& displays, const Windows& windows) {
        const Picture before = desktop::readScreen(session->desktop().client());
        open(displays);
        std::size_t mark = session->mark();
        session->input().tap(key::space);
        session->program().waitForLine(line::toggled, mark);
        for (std::size_t index = 0; index < displays.size(); ++index) {
            const Area area = areaOf(displays[index]);
            const Area frame = windows.windows[index]->frame();
            const Area inside{frame.x - area.x, frame.y - area.y, frame.width, frame.height};
            const Picture original = before.cut(area.x, area.y, area.width, area.height);
            session->input().moveTo({frame.x + 5, frame.y + 5});
            std::string outcome;
            desktop::waitUntil(
                [&] {
                    outcome = highlightDifference(original, session->screen(area), inside);
                    return outcome == "equal";
                },
                std::chrono::seconds(5));
            EXPECT_EQ(outcome, "equal") << "display " << index;
            if (outcome != "equal") {
                desktop::writePng(Session::pictureFile("layouts-highlight"), session->screen(area));
            }
        }
        mark = session->mark();
        session->input().pressButton();
        session->input().releaseButton();
        const auto file = session->waitForLine(line::saved, mark);
        EXPECT_EQ(difference(windows.windows.back()->picture(),
                             desktop::decodePng(desktop::readFile(file)).picture),
                  "equal");
        waitUntilClosed();
        std::filesystem::remove(file);
    }

    void check(TableGroup group, const std::vector<Layout>& layouts,
               desktop::Compositor compositor) {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "A server with several displays needs root.";
        }
        startWith(layouts.front(), compositor);
        for (const Layout& layout : layouts) {
            SCOPED_TRACE(layout.setUp);
            const TableRow row(group, {.setUp = layout.setUp,
                                       .tested = "overlay frames, every pixel of each display, "
                                                 "pixels per metre, window highlights"});
            session->arrange(layout.outputs, layout.primary);
            const std::vector<Output> displays(
                layout.outputs.begin(),
                layout.outputs.end() - static_cast<std::ptrdiff_t>(layout.mirrors));
            {
                const Windows windows(*session, displays);
                for (const Output& each : displays) {
                    checkRegion(displays, each);
                }
                checkWindows(displays, windows);
            }
            session->require("The empty desktop after a layout", [&] {
                return desktop::readScreen(session->desktop().client()) == session->wallpaper();
            });
            // An overlay that opens again at once shows what the one before it showed.
            EXPECT_TRUE(desktop::staysTrue([&] { return session->overlayAreas().empty(); },
                                           std::chrono::milliseconds(300)));
        }
    }

    std::unique_ptr<Session> session;
};

TEST_F(Layouts, of_equal_scales_are_exact) {
    check(TableGroup::displays,
          {{"Portrait on the left of the primary",
            {display(1, 1080, 420, 1920, 1080), display(0, 0, 0, 1080, 1920)}},
           {"Laptop below an external display, laptop primary",
            {display(0, 277, 1080, 1366, 768), display(1, 0, 0, 1920, 1080)}},
           {"Laptop below an external display, external primary",
            {display(0, 277, 1080, 1366, 768), display(1, 0, 0, 1920, 1080)},
            1},
           {"Primary on the right",
            {display(1, 0, 0, 1280, 1024), display(0, 1280, 0, 1280, 1024)},
            1},
           {"Three of different sizes, primary in the middle",
            {display(0, 0, 56, 1280, 1024), display(1, 1280, 0, 1920, 1080),
             display(2, 3200, 312, 1024, 768)},
            1},
           {"Four in a square, the last primary",
            {display(0, 0, 0, 1024, 768), display(1, 1024, 0, 1024, 768),
             display(2, 0, 768, 1024, 768), display(3, 1024, 768, 1024, 768)},
            3},
           {"A gap between two", {display(0, 0, 0, 1024, 768), display(1, 1424, 300, 1280, 800)}},
           {"Two that touch in a corner, none primary",
            {display(0, 0, 0, 1024, 768), display(1, 1024, 768, 801, 601)},
            std::nullopt}},
          desktop::Compositor::none);
}

TEST_F(Layouts, of_equal_scales_are_exact_under_a_compositor) {
    check(TableGroup::displays,
          {{"Mirrored, of one size",
            {display(0, 0, 0, 1280, 800), display(1, 0, 0, 1280, 800)},
            0,
            1},
           {"Mirrored on a smaller projector, which is primary",
            {display(0, 0, 0, 1920, 1080), display(1, 0, 0, 1024, 768)},
            1,
            1},
           {"Wide beside portrait, a gap above",
            {display(0, 0, 700, 2560, 1080), display(1, 2560, 0, 1080, 1920)}},
           {"One of 1366 x 768", {display(0, 0, 0, 1366, 768)}}},
          desktop::Compositor::picom);
}

TEST_F(Layouts, of_mixed_scales_are_exact) {
    check(TableGroup::scales,
          {{"4K at 2, primary, on the left of 1080p at 1",
            {display(at200, 0, 0, 3840, 2160), display(at1, 3840, 540, 1920, 1080)}},
           {"Laptop at 1.5 below an external display at 1",
            {display(at150, 152, 1440, 2256, 1504), display(at1, 0, 0, 2560, 1440)}},
           {"Portrait at 1.5 on the left of a laptop at 2",
            {display(at150, 0, 0, 1200, 1920), display(at200, 1200, 120, 2880, 1800)},
            1},
           {"1.25, 1.75 and 1 in a row",
            {display(at125, 0, 0, 1920, 1080), display(at175, 1920, 90, 1921, 1081),
             display(at1, 3841, 0, 1280, 1024)}}},
          desktop::Compositor::none);
}

TEST_F(Layouts, of_mixed_scales_are_exact_under_a_compositor) {
    check(TableGroup::scales,
          {{"1080p at 1, primary, on the left of a display at 2",
            {display(at1, 0, 0, 1920, 1080), display(at200, 1920, 0, 2560, 1600)}},
           {"1.75 above 1.25",
            {display(at125, 0, 1000, 1367, 769), display(at175, 0, 0, 1601, 1000)}}},
          desktop::Compositor::picom);
}

}  // namespace
}  // namespace journeys
