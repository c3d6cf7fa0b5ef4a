// Window mode over windows that draw their decoration and their shadow themselves.
#include <gtest/gtest.h>

#include <algorithm>

#include "journeys/desktops_table.h"
#include "journeys/window_kinds.h"

namespace journeys {
namespace {

/// GTK 3 and GTK 4, with their shadows and without.
class SelfDecorated : public WindowKinds {
  protected:
    struct Shown {
        std::unique_ptr<desktop::Process> program;
        /// With its shadow.
        Area whole;
        Area visible;
    };
    Shown show(int version) {
        const std::string title = "GTK " + std::to_string(version);
        auto program = session.desktop().startGtkWindow(version, title);
        const xcb_window_t window = windowTitled(title);
        const Area whole = areaOf(window);
        const auto [left, right, top, bottom] = extentsOf(window, "_GTK_FRAME_EXTENTS");
        const Area visible{whole.x + left, whole.y + top, whole.width - left - right,
                           whole.height - top - bottom};
        // It is mapped before its first frame.
        session.require("The window on the screen", [&] {
            const Picture line =
                session.screen({visible.x, visible.y + visible.height - 10, visible.width, 1});
            return std::count(line.pixels.begin(), line.pixels.end(), line.at(30, 0)) >
                   visible.width / 2;
        });
        session.waitUntilStill();
        return {std::move(program), whole, visible};
    }
    /// Where the picture is opaque it is what the screen shows; corners are softened.
    static void expectOpaquePartsOf(const Picture& screen, const Picture& taken) {
        constexpr int corner = 12;
        std::size_t opaque = 0;
        for (int y = 0; y < taken.height; ++y) {
            for (int x = 0; x < taken.width; ++x) {
                const bool isInCorner = (x < corner || x >= taken.width - corner) &&
                                        (y < corner || y >= taken.height - corner);
                if (taken.at(x, y) >> 24U == 255 && !isInCorner) {
                    ++opaque;
                    ASSERT_EQ(taken.at(x, y), screen.at(x, y)) << "at " << x << ", " << y;
                }
            }
        }
        EXPECT_GT(opaque, taken.pixels.size() / 2);
    }
    void check(int version) {
        SCOPED_TRACE("GTK " + std::to_string(version));
        session.writeSettings({{"captureShadows", false}});
        const Shown shown = show(version);
        const Place at{shown.visible.x + 30, shown.visible.y + shown.visible.height - 20};
        const std::string name = "gtk" + std::to_string(version) + "-" + GetParam().name;
        {
            const Picture screen = session.screen(shown.visible);
            hover(at);
            const Picture taken = click().picture;
            ASSERT_EQ(taken.width, shown.visible.width);
            ASSERT_EQ(taken.height, shown.visible.height);
            expectOpaquePartsOf(screen, taken);
            if (isLive()) {
                EXPECT_LT(taken.at(0, 0) >> 24U, 200U) << "a round corner";
            }
            desktop::writePng(Session::pictureFile(name + "-without-shadow"), taken);
        }
        {
            session.writeSettings({{"captureShadows", true}});
            hover(at);
            const Picture taken = click().picture;
            if (isLive()) {
                EXPECT_EQ(taken.width, shown.whole.width) << "its own shadow";
                EXPECT_EQ(taken.height, shown.whole.height);
            }
            EXPECT_GT(taken.width, shown.visible.width);
            EXPECT_LT(taken.at(0, 0) >> 24U, 16U);
            desktop::writePng(Session::pictureFile(name + "-with-shadow"), taken);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Desktops, SelfDecorated,
                         testing::ValuesIn(setUpsNamed({"openbox", "xfwm4_compositing",
                                                        "kwin_x11_compositing", "mutter"})),
                         setUpName);

TEST_P(SelfDecorated, windows_of_gtk_3_and_4_keep_their_corners_and_shadow) {
    const TableRow row(
        TableGroup::windows,
        {GetParam().title,
         "windows of GTK 3 and GTK 4 that decorate themselves, shadows off and on",
         isLive() ? "the visible frame, round corners transparent; with the window's "
                    "own shadow"
                  : "the visible frame; with a drawn shadow"});
    check(3);
    check(4);
}

}  // namespace
}  // namespace journeys
