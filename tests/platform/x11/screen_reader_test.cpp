#include "platform/x11/screen_reader.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "capture_rig.h"
#include "desktop/process.h"
#include "platform/x11/pixel_memory.h"

namespace {

using platform::x11::Backdrop;
using platform::x11::Connection;
using platform::x11::NativeRect;
using platform::x11::PixelLayout;
using platform::x11::PixelMemory;
using platform::x11::PixelSource;
using platform::x11::ScreenReader;

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

/// A server with arguments of the test's choice.
class BareServer {
  public:
    explicit BareServer(std::vector<std::string> arguments) {
        std::string name =
            (std::filesystem::temp_directory_path() / "lumaframe-server-XXXXXX").string();
        directory_ = ::mkdtemp(name.data());
        std::vector<std::string> command{"Xvfb", "-displayfd", "1", "-noreset", "-nolisten", "tcp"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        process_ = std::make_unique<desktop::Process>(
            desktop::ProcessOptions{.command = std::move(command),
                                    .environment = {{"PATH", "/usr/bin:/bin"}},
                                    .outputFile = directory_ / "server"});
        process_->waitForLine("");
        auto connection = Connection::open(":" + process_->outputLines().at(0));
        connection_ = std::move(connection.value());
    }
    ~BareServer() {
        connection_.reset();
        process_.reset();
        std::filesystem::remove_all(directory_);
    }
    BareServer(const BareServer&) = delete;
    BareServer& operator=(const BareServer&) = delete;

    [[nodiscard]] Connection& connection() { return *connection_; }

  private:
    std::filesystem::path directory_;
    std::unique_ptr<desktop::Process> process_;
    std::unique_ptr<Connection> connection_;
};

/// What a server shows in the rectangle (10, 20, 31, 7) of its screen, drawn with `color`.
desktop::Picture readFilled(BareServer& server, std::uint32_t color) {
    Connection& connection = server.connection();
    doubles::ManualMainQueue queue;
    queue.allowLeftovers();
    tests::fill(connection.get(), connection.root(), {10, 20, 30, 7}, color);
    ScreenReader reader(connection, queue);
    const auto layout = PixelLayout::ofVisual(connection, connection.screen().root_visual);
    const auto canvas =
        reader.read({10, 20, 31, 7}, {{connection.root(), layout.value(), {0, 0, 64, 48}, {0, 0}}},
                    Backdrop::opaqueBlack);
    return tests::pictureOf(canvas.value().image(base::AlphaChannel::none, nullptr));
}

TEST(ScreenReader, reads_a_server_without_shared_memory) {
    BareServer server({"-screen", "0", "64x48x24", "-extension", "MIT-SHM"});
    const auto picture = readFilled(server, 0x123456);
    EXPECT_EQ(picture.at(0, 0), 0xff123456);
    EXPECT_EQ(picture.at(29, 6), 0xff123456);
    EXPECT_EQ(picture.at(30, 6), 0xff000000);
}

TEST(ScreenReader, reads_a_screen_of_16_bits) {
    BareServer server({"-screen", "0", "64x48x16"});
    const auto picture = readFilled(server, 16U << 11U | 32U << 5U | 8U);
    EXPECT_EQ(picture.at(0, 0), 0xff848242);
    EXPECT_EQ(picture.at(29, 6), 0xff848242);
    EXPECT_EQ(picture.at(30, 0), 0xff000000);
}

TEST(ScreenReader, reads_a_screen_of_30_bits) {
    BareServer server({"-screen", "0", "64x48x30"});
    const auto picture = readFilled(server, 0x3ffU << 20U | 0x204U << 10U | 0x003U);
    EXPECT_EQ(picture.at(29, 6), 0xffff8100);
    EXPECT_EQ(picture.at(30, 6), 0xff000000);
}

TEST(ScreenReader, puts_several_sources_side_by_side_on_black) {
    BareServer server({"-screen", "0", "64x48x24"});
    Connection& connection = server.connection();
    doubles::ManualMainQueue queue;
    queue.allowLeftovers();
    tests::fill(connection.get(), connection.root(), {0, 0, 32, 48}, 0x111111);
    tests::fill(connection.get(), connection.root(), {32, 0, 32, 48}, 0x222222);
    const auto layout = *PixelLayout::ofVisual(connection, connection.screen().root_visual);
    const std::vector<PixelSource> sources{{connection.root(), layout, {100, 0, 10, 10}, {0, 0}},
                                           {connection.root(), layout, {115, 5, 10, 10}, {40, 0}}};
    ScreenReader reader(connection, queue);
    for (const Backdrop backdrop : {Backdrop::opaqueBlack, Backdrop::transparent}) {
        const auto canvas = reader.read({95, 0, 30, 15}, sources, backdrop);
        const std::uint32_t empty = backdrop == Backdrop::transparent ? 0U : 0xff000000U;
        const auto picture =
            tests::pictureOf(canvas.value().image(base::AlphaChannel::premultiplied, nullptr));
        const auto colorAt = [&](int x, int y) { return picture.at(x, y) & 0xffffffU; };
        EXPECT_EQ(picture.at(4, 0), empty);
        EXPECT_EQ(colorAt(5, 0), 0x111111U);
        EXPECT_EQ(colorAt(14, 9), 0x111111U);
        EXPECT_EQ(picture.at(15, 9), empty);
        EXPECT_EQ(picture.at(20, 4), empty);
        EXPECT_EQ(colorAt(20, 5), 0x222222U);
        EXPECT_EQ(colorAt(29, 14), 0x222222U);
        EXPECT_EQ(picture.at(29, 0), empty);
        EXPECT_EQ(picture.at(5, 0) >> 24U, 255U);
    }
}

std::uint32_t colorOfPlace(int x, int y) {
    return static_cast<std::uint32_t>(x) << 16U | static_cast<std::uint32_t>(y) << 8U | 0x7fU;
}

/// How many pixels of `area` are not what they should be when `place`, which shows the screen from
/// its corner on, is read alone.
int wrongPixels(ScreenReader& reader, Connection& connection, const NativeRect& place,
                const NativeRect& area, Backdrop backdrop) {
    const auto layout = *PixelLayout::ofVisual(connection, connection.screen().root_visual);
    const auto canvas = reader.read(area, {{connection.root(), layout, place, {0, 0}}}, backdrop);
    const auto picture =
        tests::pictureOf(canvas.value().image(base::AlphaChannel::premultiplied, nullptr));
    const std::uint32_t empty = backdrop == Backdrop::transparent ? 0U : 0xff000000U;
    // The fourth byte has no meaning there.
    const std::uint32_t meaning = backdrop == Backdrop::transparent ? ~0U : 0xffffffU;
    int wrong = 0;
    for (int y = 0; y < area.height; ++y) {
        for (int x = 0; x < area.width; ++x) {
            const int sourceX = x + area.x - place.x;
            const int sourceY = y + area.y - place.y;
            const bool isInside =
                sourceX >= 0 && sourceX < place.width && sourceY >= 0 && sourceY < place.height;
            const auto expected = isInside ? colorOfPlace(sourceX, sourceY) | 0xff000000U : empty;
            wrong += (picture.at(x, y) & meaning) == (expected & meaning) ? 0 : 1;
        }
    }
    return wrong;
}

TEST(ScreenReader, moves_no_row_of_a_single_source_onto_another) {
    BareServer server({"-screen", "0", "64x48x24"});
    Connection& connection = server.connection();
    doubles::ManualMainQueue queue;
    queue.allowLeftovers();
    for (int y = 0; y < 48; ++y) {
        for (int x = 0; x < 64; ++x) {
            tests::fill(connection.get(), connection.root(), {x, y, 1, 1}, colorOfPlace(x, y));
        }
    }
    ScreenReader reader(connection, queue);
    constexpr NativeRect place{100, 100, 20, 15};
    for (const Backdrop backdrop : {Backdrop::opaqueBlack, Backdrop::transparent}) {
        for (int margins = 0; margins < 81; ++margins) {
            // From a part that is cut off to one with room around it.
            const auto margin = [&](int divisor) { return (margins / divisor % 3 - 1) * 4; };
            const NativeRect area{place.x - margin(1), place.y - margin(3),
                                  place.width + margin(1) + margin(9),
                                  place.height + margin(3) + margin(27)};
            ASSERT_EQ(wrongPixels(reader, connection, place, area, backdrop), 0)
                << "margins " << margins;
        }
    }
}

TEST(ScreenReader, has_the_server_write_the_region_and_nothing_else) {
    BareServer server({"-screen", "0", "64x48x24"});
    Connection& connection = server.connection();
    doubles::ManualMainQueue queue;
    queue.allowLeftovers();
    tests::fill(connection.get(), connection.root(), {0, 0, 64, 48}, 0xffffff);
    ScreenReader reader(connection, queue);
    const auto layout = *PixelLayout::ofVisual(connection, connection.screen().root_visual);
    const auto canvas =
        reader.read({10, 20, 30, 7}, {{connection.root(), layout, {0, 0, 64, 48}, {0, 0}}},
                    Backdrop::opaqueBlack);
    constexpr std::size_t size = std::size_t{30} * 7 * 4;
    // The segment has room for the whole screen, and is a mebibyte at least.
    const std::uint8_t* const pixels = canvas.value().pixels;
    EXPECT_EQ(pixels[size - 2], 0xff);
    EXPECT_TRUE(
        std::all_of(pixels + size, pixels + mebibyte, [](std::uint8_t byte) { return byte == 0; }));
}

TEST(ScreenReader, fails_with_a_sentence_where_there_is_nothing_to_read) {
    BareServer server({"-screen", "0", "64x48x24"});
    doubles::ManualMainQueue queue;
    queue.allowLeftovers();
    ScreenReader reader(server.connection(), queue);
    const auto layout =
        *PixelLayout::ofVisual(server.connection(), server.connection().screen().root_visual);
    const auto gone = reader.read({0, 0, 5, 5}, {{0xdeadbeef, layout, {0, 0, 64, 48}, {0, 0}}},
                                  Backdrop::opaqueBlack);
    ASSERT_FALSE(gone);
    EXPECT_FALSE(gone.error().sentence.empty());
    EXPECT_FALSE(reader.read({0, 0, 32767, 32767}, {}, Backdrop::opaqueBlack));
}

class PixelMemoryTest : public testing::Test {
  protected:
    PixelMemoryTest() : server({"-screen", "0", "64x48x24"}) { queue.allowLeftovers(); }

    BareServer server;
    doubles::ManualMainQueue queue;
    std::optional<PixelMemory> memory{std::in_place, server.connection(), queue};
};

TEST_F(PixelMemoryTest, uses_one_segment_again_and_again) {
    auto first = memory->take(mebibyte);
    ASSERT_TRUE(first);
    EXPECT_NE(first->segment, static_cast<xcb_shm_seg_t>(XCB_NONE));
    const auto* const bytes = first->bytes;
    first.reset();
    queue.runAll();
    const auto second = memory->take(mebibyte / 2);
    EXPECT_EQ(second->bytes, bytes);
}

TEST_F(PixelMemoryTest, gives_another_segment_while_a_picture_is_held) {
    const auto first = memory->take(mebibyte);
    const auto second = memory->take(mebibyte);
    EXPECT_NE(first->bytes, second->bytes);
    EXPECT_NE(first->segment, second->segment);
}

/// Whether the system has a page behind that place.
bool isWarm(const std::uint8_t* place) {
    const auto pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto page = reinterpret_cast<std::uintptr_t>(place) / pageSize * pageSize;
    unsigned char isThere = 0;
    ::mincore(reinterpret_cast<void*>(page), 1, &isThere);
    return (isThere & 1U) != 0;
}

TEST_F(PixelMemoryTest, keeps_little_and_empty_memory_two_seconds_after_the_last_use) {
    auto lease = memory->take(32 * mebibyte);
    std::fill(lease->bytes, lease->bytes + 32 * mebibyte, std::uint8_t{7});
    lease.reset();
    queue.advance(std::chrono::milliseconds{1999});
    EXPECT_EQ(memory->idleSize(), 32 * mebibyte);
    queue.advance(std::chrono::milliseconds{1});
    EXPECT_EQ(memory->idleSize(), 3 * mebibyte);
    lease = memory->take(32 * mebibyte);
    EXPECT_TRUE(isWarm(lease->bytes + 2 * mebibyte));
    EXPECT_FALSE(isWarm(lease->bytes + 5 * mebibyte)) << "It went back to the system.";
    EXPECT_TRUE(std::all_of(lease->bytes, lease->bytes + 3 * mebibyte,
                            [](std::uint8_t byte) { return byte == 0; }));
}

TEST_F(PixelMemoryTest, forgets_a_small_picture_too) {
    auto lease = memory->take(mebibyte);
    std::fill(lease->bytes, lease->bytes + mebibyte, std::uint8_t{7});
    lease.reset();
    queue.advance(std::chrono::milliseconds{2000});
    lease = memory->take(mebibyte);
    EXPECT_TRUE(isWarm(lease->bytes));
    EXPECT_TRUE(std::all_of(lease->bytes, lease->bytes + mebibyte,
                            [](std::uint8_t byte) { return byte == 0; }));
}

TEST_F(PixelMemoryTest, a_use_in_between_starts_the_two_seconds_anew) {
    ASSERT_TRUE(memory->take(32 * mebibyte));
    queue.advance(std::chrono::milliseconds{1500});
    ASSERT_TRUE(memory->take(32 * mebibyte));
    queue.advance(std::chrono::milliseconds{1500});
    EXPECT_EQ(memory->idleSize(), 32 * mebibyte);
    queue.advance(std::chrono::milliseconds{500});
    EXPECT_EQ(memory->idleSize(), 3 * mebibyte);
}

TEST_F(PixelMemoryTest, is_filled_ahead_by_the_server_as_far_as_its_screen_goes) {
    Connection& connection = server.connection();
    tests::fill(connection.get(), connection.root(), {0, 0, 64, 48}, 0x123456);
    memory->prepare(mebibyte);
    (void)connection.serverTime();
    EXPECT_EQ(memory->idleSize(), 64U * 48 * 4);
    const auto lease = memory->take(64U * 48 * 4);
    EXPECT_EQ(lease->bytes[0], 0x56);
    EXPECT_EQ(lease->bytes[64 * 48 * 4 - 2], 0x12);
}

TEST_F(PixelMemoryTest, is_filled_ahead_once) {
    Connection& connection = server.connection();
    memory->prepare(mebibyte);
    tests::fill(connection.get(), connection.root(), {0, 0, 64, 48}, 0xffffff);
    memory->prepare(mebibyte);
    (void)connection.serverTime();
    EXPECT_EQ(memory->take(mebibyte)->bytes[0], 0);
}

TEST_F(PixelMemoryTest, may_be_given_back_on_another_thread) {
    auto lease = memory->take(mebibyte);
    const auto* const bytes = lease->bytes;
    std::thread([owner = std::move(lease->owner)]() mutable { owner.reset(); }).join();
    queue.runAll();
    EXPECT_EQ(memory->take(mebibyte)->bytes, bytes);
}

TEST_F(PixelMemoryTest, outlives_whoever_gave_it) {
    auto lease = memory->take(mebibyte);
    memory.reset();
    lease->bytes[mebibyte - 1] = 5;
    EXPECT_EQ(lease->bytes[mebibyte - 1], 5);
    lease.reset();
    queue.runAll();
}

}  // namespace
