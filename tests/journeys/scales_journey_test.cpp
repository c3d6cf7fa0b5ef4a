// Displays of every scale: native pixels in the picture and for the recognition, a label that is as
// large as its points say, and a file that says how many pixels an inch has.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <fstream>

#include "journeys/desktops_table.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace fs = std::filesystem;
namespace key = desktop::key;
using desktop::difference;

constexpr const char* textCopied = "OCR complete! Text copied to clipboard.";
/// Not a multiple of anything.
constexpr int screenWidth = 1279;
constexpr int screenHeight = 801;

/// As a desktop's settings daemon says how large things are to be.
void setDotsPerInch(const desktop::XClient& client, int dotsPerInch) {
    const std::string resources = "Xft.dpi:\t" + std::to_string(dotsPerInch) + "\n";
    xcb_change_property(client.get(), XCB_PROP_MODE_REPLACE, client.root(),
                        XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(resources.size()), resources.data());
    client.synchronize();
}

/// How many rows the label's letters take, which stand to the right of a selection that ends at
/// `right` and has its middle at `middle`; native pixels.
int heightOfLetters(Session& session, int right, int middle, double scale) {
    const auto points = [scale](double length) { return static_cast<int>(length * scale); };
    const Picture picture =
        session.screen({right + points(8), middle - points(14), points(60), points(28)});
    int first = picture.height;
    int last = -1;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            // Everything else is dimmed twice: by the overlay and by the label's ground.
            const bool isLetter = (picture.at(x, y) & 0xffU) > 160;
            first = isLetter ? std::min(first, y) : first;
            last = isLetter ? y : last;
        }
    }
    return last - first + 1;
}

std::uint32_t pixelsPerMetre(double scale) {
    return static_cast<std::uint32_t>(std::lround(scale * 72 / 0.0254));
}

/// Parameter: hundredths.
class Scales : public testing::TestWithParam<int> {
  protected:
    Scales() : session({.outputs = {{0, 0, screenWidth, screenHeight}}}) {
        setDotsPerInch(session.desktop().client(), GetParam() * 96 / 100);
        for (const char* name : {"bin", "libexec/lumaframe", "share/lumaframe/sounds"}) {
            fs::create_directories(prefix / name);
        }
        fs::copy_file(LUMAFRAME_PROGRAM, prefix / "bin/lumaframe");
        fs::create_symlink(LUMAFRAME_TEST_SCRIPTED_HELPER, helper);
        std::ofstream(helper.string() + ".answer") << "seen";
        session.useProgram(prefix / "bin/lumaframe");
        session.writeSettings({{"playSounds", false}});
        session.start();
    }

    void checkDrag(const Area& expected, const std::function<void()>& drag) {
        session.openOverlay();
        EXPECT_EQ(session.overlayAreas(), (std::vector<Area>{{0, 0, screenWidth, screenHeight}}));
        const std::size_t before = session.mark();
        drag();
        const auto file = session.waitForLine(line::saved, before);
        const auto png = desktop::decodePng(desktop::readFile(file));
        EXPECT_EQ(difference(cut(expected), png.picture), "equal");
        EXPECT_EQ(png.density,
                  (desktop::Png::Density{pixelsPerMetre(scale), pixelsPerMetre(scale)}));
        session.waitUntilClosed();
        fs::remove(file);
    }

    [[nodiscard]] Picture cut(const Area& area) const {
        return session.wallpaper().cut(area.x, area.y, area.width, area.height);
    }

    /// The picture that the recognition helper was given last.
    [[nodiscard]] Picture seen() const {
        std::ifstream file(helper.string() + ".seen", std::ios::binary);
        Picture picture;
        file >> picture.width >> picture.height;
        file.get();
        picture.pixels.resize(static_cast<std::size_t>(picture.width) *
                              static_cast<std::size_t>(picture.height));
        file.read(reinterpret_cast<char*>(picture.pixels.data()),
                  static_cast<std::streamsize>(picture.pixels.size() * 4));
        for (std::uint32_t& pixel : picture.pixels) {
            pixel |= 0xff000000U;
        }
        return picture;
    }

    double scale = GetParam() / 100.0;
    Session session;
    fs::path prefix = session.desktop().directory() / "prefix";
    fs::path helper = prefix / "libexec/lumaframe/lumaframe-text-helper";
};

INSTANTIATE_TEST_SUITE_P(Hundredths, Scales, testing::Values(100, 125, 150, 175, 200),
                         [](const auto& parameter) { return std::to_string(parameter.param); });

TEST_P(Scales, every_drag_gives_native_pixels_and_the_label_is_as_large_as_its_points) {
    char factor[16];
    std::snprintf(factor, sizeof factor, "%g", scale);
    const TableRow row(
        TableGroup::scales,
        {.setUp = "One display at " + std::string(factor) + " (Xft.dpi " +
                  std::to_string(GetParam() * 96 / 100) + ")",
         .tested = "overlay frame, pixels of drags to any corner and around a centre, pixels per "
                   "metre, height of the label's letters, pixels given to the recognition",
         .result = "exact; digits of 6.5 to 8.5 points"});
    auto& input = session.input();
    checkDrag({101, 53, 611, 401}, [&] { input.drag({101, 53}, {712, 454}); });
    checkDrag({111, 222, 222, 555}, [&] { input.drag({333, 777}, {111, 222}); });
    checkDrag({900, 601, 379, 200}, [&] {
        input.drag({900, 601}, {screenWidth - 1, screenHeight - 1});
    });
    checkDrag({503, 323, 198, 156}, [&] {
        input.press(key::leftAlt);
        input.drag({602, 401}, {701, 479});
        input.release(key::leftAlt);
    });

    session.openOverlay();
    input.moveTo({101, 53});
    input.pressButton();
    input.moveInSteps({101, 53}, {712, 453});
    // The digits of ten-point fonts are between 6.5 and 8.5 points high.
    int height = 0;
    EXPECT_TRUE(desktop::waitUntil([&] {
        height = heightOfLetters(session, 712, 253, scale);
        return height >= std::floor(6.5 * scale) && height <= std::ceil(8.5 * scale);
    })) << height;
    desktop::writePng(Session::pictureFile("label-at-" + std::to_string(GetParam())),
                      session.screen({600, 153, 320, 200}));
    input.releaseButton();
    session.waitUntilClosed();

    const std::size_t before = session.mark();
    session.openRecognitionOverlay();
    input.drag({101, 53}, {712, 454});
    session.waitForLine(textCopied, before);
    EXPECT_EQ(difference(cut({101, 53, 611, 401}), seen()), "equal");
}

TEST(MixedScales, the_label_has_the_size_of_its_display) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "A server with several displays needs root.";
    }
    const TableRow row(TableGroup::scales, {.setUp = "1 beside 2, in the middle of a drag",
                                            .tested = "height of the label's letters on each",
                                            .result = "twice as many pixels"});
    Session session({.outputs = {{0, 0, 1280, 800}, {1280, 0, 1600, 1000}},
                     .environment = {{"QT_SCREEN_SCALE_FACTORS", "DUMMY0=1;DUMMY1=2"}}},
                    desktop::Wallpaper::Motif::gradient);
    session.writeSettings({{"saveToDownloads", false}});
    session.start();
    const auto drag = [&](Place from, Place to, double scale, const char* name) {
        session.openOverlay();
        session.input().moveTo(from);
        session.input().pressButton();
        session.input().moveInSteps(from, to);
        int height = 0;
        const int middle = (from.y + to.y) / 2;
        EXPECT_TRUE(desktop::waitUntil([&] {
            height = heightOfLetters(session, to.x, middle, scale);
            return height >= std::floor(6.5 * scale) && height <= std::ceil(8.5 * scale);
        })) << height;
        desktop::writePng(Session::pictureFile(name),
                          desktop::readScreen(session.desktop().client()));
        session.input().releaseButton();
        session.waitUntilClosed();
        return height;
    };
    const int once = drag({300, 200}, {900, 600}, 1, "mixed-scales-at-1");
    const int twice = drag({1600, 200}, {2400, 700}, 2, "mixed-scales-at-2");
    // Each is rounded to whole pixels.
    EXPECT_NEAR(twice, 2 * once, 2);
}

}  // namespace
}  // namespace journeys
