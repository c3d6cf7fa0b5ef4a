// The colours of the screen: a test card on screens of 24 and of 30 bits, and the colour profile of
// each display.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "desktop/color_profile.h"
#include "journeys/desktops_table.h"
#include "journeys/overlay_colors.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::ColorProfile;
using desktop::difference;
using testing::Contains;
using testing::Not;

using Bytes = std::vector<std::uint8_t>;

/// Pixels as the screen has them; `bits` of each colour, red the highest.
struct TestCard {
    static constexpr int width = 1024;
    static constexpr int rowsOfEach = 4;
    static constexpr int height = 40;

    explicit TestCard(int bitsOfEach) : bits(bitsOfEach) {
        const std::uint32_t highest = (1U << static_cast<unsigned>(bits)) - 1;
        std::mt19937 generator(30);
        std::uniform_int_distribution<std::uint32_t> any(0, highest);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                // Every step that there is, in each colour by itself and in all of them.
                const auto step = static_cast<std::uint32_t>(x) * (highest + 1) / width;
                switch (y / rowsOfEach) {
                    case 0:
                        add(step, 0, 0);
                        break;
                    case 1:
                        add(0, step, 0);
                        break;
                    case 2:
                        add(0, 0, step);
                        break;
                    case 3:
                        add(step, step, step);
                        break;
                    case 4:
                        add(highest - step, step, highest - step);
                        break;
                    default:
                        add(any(generator), any(generator), any(generator));
                }
            }
        }
    }

    void add(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
        const auto shift = static_cast<unsigned>(bits);
        const auto rest = shift - 8;
        raw.pixels.push_back(red << 2 * shift | green << shift | blue);
        expected.pixels.push_back(0xff000000U | (red >> rest) << 16U | (green >> rest) << 8U |
                                  blue >> rest);
    }

    int bits;
    Picture raw{width, height, {}};
    /// The upper eight bits of each colour.
    Picture expected{width, height, {}};
};

/// Shows `picture`, whose pixels are the screen's own, as a window that no manager touches.
xcb_window_t show(const desktop::XClient& client, const Picture& picture, Place place) {
    const xcb_window_t window = xcb_generate_id(client.get());
    const xcb_pixmap_t pixmap = desktop::uploadPixels(client, picture);
    const std::uint32_t values[] = {pixmap, 1};
    xcb_create_window(client.get(), XCB_COPY_FROM_PARENT, window, client.root(),
                      static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y),
                      static_cast<std::uint16_t>(picture.width),
                      static_cast<std::uint16_t>(picture.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values);
    const auto pid = static_cast<std::uint32_t>(::getpid());
    xcb_change_property(client.get(), XCB_PROP_MODE_REPLACE, window, client.atom("_NET_WM_PID"),
                        XCB_ATOM_CARDINAL, 32, 1, &pid);
    xcb_map_window(client.get(), window);
    xcb_free_pixmap(client.get(), pixmap);
    client.synchronize();
    return window;
}

struct Depth {
    int bits;
    desktop::Compositor compositor;
};

class TestCards : public testing::TestWithParam<Depth> {};

INSTANTIATE_TEST_SUITE_P(
    Screens, TestCards,
    testing::Values(Depth{24, desktop::Compositor::none}, Depth{24, desktop::Compositor::picom},
                    Depth{30, desktop::Compositor::none}, Depth{30, desktop::Compositor::picom}),
    [](const auto& parameter) {
        return std::to_string(parameter.param.bits) +
               (parameter.param.compositor == desktop::Compositor::none ? "_frozen" : "_live");
    });

TEST_P(TestCards, come_out_of_the_file_as_the_screen_has_them) {
    const auto [bits, compositor] = GetParam();
    const TableRow row(
        TableGroup::colors,
        {.setUp = "A screen of " + std::to_string(bits) + " bits" +
                  (compositor == desktop::Compositor::none ? "" : ", with a compositor"),
         .tested = "a test card with every step of every colour: the picture of a region",
         .result = bits == 24 ? "exact" : "the upper eight bits of each colour, exact"});
    Session session({.outputs = {{0, 0, 1280, 800}}, .depth = bits, .compositor = compositor});
    session.writeSettings(nlohmann::json::object());
    session.start();
    auto& client = session.desktop().client();
    ASSERT_EQ(client.screen().root_depth, bits);
    const TestCard card(bits == 24 ? 8 : 10);
    show(client, card.raw, {100, 200});
    session.waitUntilStill();
    session.openOverlay();
    const std::size_t before = session.mark();
    session.input().drag({100, 200}, {100 + TestCard::width, 200 + TestCard::height});
    const auto png =
        desktop::decodePng(desktop::readFile(session.waitForLine(line::saved, before)));
    EXPECT_EQ(difference(card.expected, png.picture), "equal");
    EXPECT_EQ(difference(card.expected, session.clipboardPicture().picture), "equal");
    EXPECT_EQ(png.bitDepth, 8);
    EXPECT_THAT(png.chunks, Contains("sRGB"));
}

TEST_P(TestCards, come_out_of_a_window_as_the_screen_has_them) {
    const auto [bits, compositor] = GetParam();
    const TableRow row(
        TableGroup::colors,
        {.setUp = "A screen of " + std::to_string(bits) + " bits" +
                  (compositor == desktop::Compositor::none ? "" : ", with a compositor"),
         .tested = "highlight and picture of a window in which every pixel is different",
         .result = bits == 24 ? "exact" : "the upper eight bits of each colour, exact"});
    Session session({.outputs = {{0, 0, 1280, 800}}, .depth = bits, .compositor = compositor});
    session.writeSettings({{"captureShadows", false}});
    session.start();
    desktop::TestWindow window(session.desktop().displayName(),
                               {.x = 200,
                                .y = 150,
                                .width = 500,
                                .height = 300,
                                .decoration = desktop::TestWindowOptions::Decoration::none});
    window.focus();
    session.waitUntilStill();
    session.openOverlay();
    std::size_t before = session.mark();
    session.input().moveTo({300, 200});
    session.input().tap(key::space);
    session.program().waitForLine(line::toggled, before);
    session.require("The highlight", [&] {
        const Picture shown = session.screen({200, 150, 500, 300});
        for (std::size_t index = 0; index < shown.pixels.size(); ++index) {
            if (!isHighlighted(shown.pixels[index], window.picture().pixels[index])) {
                return false;
            }
        }
        return isDimmed(session.screen({199, 150, 1, 1}).pixels[0],
                        session.wallpaper().at(199, 150));
    });
    desktop::writePng(
        Session::pictureFile("highlight-" + std::to_string(bits) +
                             (compositor == desktop::Compositor::none ? "" : "-live")),
        desktop::readScreen(session.desktop().client()));
    before = session.mark();
    session.input().pressButton();
    session.input().releaseButton();
    const auto png =
        desktop::decodePng(desktop::readFile(session.waitForLine(line::saved, before)));
    EXPECT_EQ(difference(window.picture(), png.picture), "equal");
}

class Profiles : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "A server with several displays needs root.";
        }
        session = std::make_unique<Session>(desktop::DesktopOptions{
            .outputs = {{0, 0, 800, 600, 0}, {800, 0, 800, 600, 1}, {1600, 0, 800, 600, 2}}});
        session->writeSettings({{"copyToClipboard", false}, {"captureShadows", false}});
        session->start();
    }
    void setProfile(const std::string& property, const Bytes& bytes) {
        auto& client = session->desktop().client();
        xcb_change_property(client.get(), XCB_PROP_MODE_REPLACE, client.root(),
                            client.atom(property), XCB_ATOM_CARDINAL, 8,
                            static_cast<std::uint32_t>(bytes.size()), bytes.data());
        client.synchronize();
    }
    desktop::Png capture(Place from, Place to) {
        session->openOverlay();
        const std::size_t before = session->mark();
        session->input().drag(from, to);
        return finish(before);
    }
    desktop::Png captureOn(int display) {
        const int x = 800 * display + 100;
        auto png = capture({x, 100}, {x + 200, 300});
        EXPECT_EQ(difference(session->wallpaper().cut(x, 100, 200, 200), png.picture), "equal");
        return png;
    }
    desktop::Png finish(std::size_t before) {
        const auto file = session->waitForLine(line::saved, before);
        auto png = desktop::decodePng(desktop::readFile(file));
        session->waitUntilClosed();
        std::filesystem::remove(file);
        return png;
    }

    std::unique_ptr<Session> session;
    const Bytes first = ColorProfile{.descriptions = {{"en", "Model 27"}}, .gamma = 2.2}.bytes();
    const Bytes second = ColorProfile{.version = ColorProfile::Version::four,
                                      .descriptions = {{"de", "Anderes"}, {"en", "Model 27"}},
                                      .gamma = 2.4}
                             .bytes();
};

TEST_F(Profiles, of_each_display_are_in_its_pictures) {
    const TableRow row(
        TableGroup::colors,
        {.setUp = "Three displays, the second primary; profiles for two, of one name",
         .tested = "the profile in the picture of a region of each, of a drag into "
                   "another display, of a window, after a change",
         .result = "the display's own, byte for byte; sRGB without one"});
    session->arrange({{0, 0, 800, 600, 0}, {800, 0, 800, 600, 1}, {1600, 0, 800, 600, 2}}, 1);
    // The primary is the first of the server's list, then come the others.
    setProfile("_ICC_PROFILE", first);
    setProfile("_ICC_PROFILE_1", second);
    auto png = captureOn(1);
    ASSERT_TRUE(png.profile);
    EXPECT_EQ(png.profile->bytes, first);
    EXPECT_EQ(png.profile->name, "Model 27");
    EXPECT_THAT(png.chunks, Not(Contains("sRGB")));
    png = captureOn(0);
    ASSERT_TRUE(png.profile);
    EXPECT_EQ(png.profile->bytes, second);
    png = captureOn(2);
    EXPECT_FALSE(png.profile);
    EXPECT_THAT(png.chunks, Contains("sRGB"));

    // Begun on the display without a profile, taken from the primary.
    png = capture({1700, 100}, {1400, 300});
    ASSERT_TRUE(png.profile);
    EXPECT_EQ(png.profile->bytes, first);

    desktop::TestWindow window(session->desktop().displayName(),
                               {.x = 150, .y = 120, .width = 300, .height = 200});
    window.focus();
    session->waitUntilStill();
    session->openOverlay();
    std::size_t before = session->mark();
    session->input().moveTo({200, 200});
    session->input().tap(key::space);
    session->program().waitForLine(line::toggled, before);
    session->waitUntilStill();
    before = session->mark();
    session->input().pressButton();
    session->input().releaseButton();
    png = finish(before);
    ASSERT_TRUE(png.profile);
    EXPECT_EQ(png.profile->bytes, second);

    setProfile("_ICC_PROFILE", second);
    png = captureOn(1);
    ASSERT_TRUE(png.profile);
    EXPECT_EQ(png.profile->bytes, second);
}

TEST_F(Profiles, that_are_broken_are_left_out) {
    const TableRow row(
        TableGroup::colors,
        {.setUp = "Broken profiles",
         .tested = "random bytes, a cut profile, one for grey, one with parts outside "
                   "of itself, an empty one, one of 5 MiB, an endless name",
         .result = "sRGB and the exact pixels, or a name cut short"});
    Bytes random(3000);
    std::mt19937 generator(8);
    std::generate(random.begin(), random.end(),
                  [&] { return static_cast<std::uint8_t>(generator()); });
    const Bytes cut(first.begin(), first.end() - 1);
    Bytes gray = first;
    std::memcpy(gray.data() + 16, "GRAY", 4);
    Bytes outside = first;
    outside[132 + 4] = 0x7f;
    for (const Bytes& broken : {random, cut, gray, outside, Bytes{}}) {
        setProfile("_ICC_PROFILE", broken);
        const auto png = captureOn(0);
        EXPECT_FALSE(png.profile);
        EXPECT_THAT(png.chunks, Contains("sRGB"));
    }
    // In pieces that fit into a request.
    setProfile("_ICC_PROFILE", first);
    auto& client = session->desktop().client();
    const Bytes piece(std::size_t{200} * 1024);
    for (int count = 0; count < 26; ++count) {
        xcb_change_property(client.get(), XCB_PROP_MODE_APPEND, client.root(),
                            client.atom("_ICC_PROFILE"), XCB_ATOM_CARDINAL, 8,
                            static_cast<std::uint32_t>(piece.size()), piece.data());
    }
    client.synchronize();
    EXPECT_FALSE(captureOn(0).profile);

    const ColorProfile endless{.descriptions = {{"en", std::string(5000, 'n')}}};
    setProfile("_ICC_PROFILE", endless.bytes());
    const auto png = captureOn(0);
    ASSERT_TRUE(png.profile);
    EXPECT_EQ(png.profile->bytes, endless.bytes());
    EXPECT_EQ(png.profile->name, std::string(79, 'n'));
}

}  // namespace
}  // namespace journeys
