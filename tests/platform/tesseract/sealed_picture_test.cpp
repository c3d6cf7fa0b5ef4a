#include "platform/tesseract/sealed_picture.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <vector>

namespace {

using namespace platform::tesseract;

/// 5 x 3 pixels, each byte another value, rows `padding` bytes longer than their pixels.
base::Image numberedPicture(std::size_t padding) {
    const std::size_t bytesPerRow = 5 * 4 + padding;
    auto bytes = std::make_shared<std::vector<std::uint8_t>>(bytesPerRow * 2 + 5 * 4);
    for (std::size_t y = 0; y < 3; ++y) {
        for (std::size_t x = 0; x < 20; ++x) {
            (*bytes)[y * bytesPerRow + x] = static_cast<std::uint8_t>(20 * y + x);
        }
    }
    return {5, 3, bytesPerRow, bytes->data(), base::AlphaChannel::premultiplied, bytes};
}

OwnedDescriptor memoryOf(std::size_t length, int seals) {
    OwnedDescriptor memory(::memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    EXPECT_EQ(::ftruncate(memory.number(), static_cast<off_t>(length)), 0);
    EXPECT_EQ(::fcntl(memory.number(), F_ADD_SEALS, seals), 0);
    return memory;
}

constexpr PictureShape fiveByThree{5, 3, 20, base::AlphaChannel::none};
constexpr int allSeals = F_SEAL_WRITE | F_SEAL_SHRINK | F_SEAL_GROW;

TEST(SealedPicture, the_pixels_come_through_with_and_without_padding) {
    for (const std::size_t padding : {0U, 12U}) {
        const base::Image sent = numberedPicture(padding);
        const auto memory = makeSealedPicture(sent);
        ASSERT_TRUE(memory);
        const auto received = mapSealedPicture(memory.value(), sealedShapeOf(sent));
        ASSERT_TRUE(received);
        const base::Image& image = received.value();
        ASSERT_EQ(image.width(), 5);
        ASSERT_EQ(image.height(), 3);
        EXPECT_EQ(image.alphaChannel(), base::AlphaChannel::premultiplied);
        for (int y = 0; y < 3; ++y) {
            EXPECT_EQ(std::memcmp(image.row(y), sent.row(y), 20), 0) << y;
        }
    }
}

TEST(SealedPicture, nobody_can_change_it_any_more) {
    const auto memory = makeSealedPicture(numberedPicture(0));
    ASSERT_TRUE(memory);
    const int number = memory.value().number();
    EXPECT_LT(::pwrite(number, "x", 1, 0), 0);
    EXPECT_LT(::ftruncate(number, 10), 0);
    EXPECT_LT(::ftruncate(number, 100), 0);
    EXPECT_EQ(::mmap(nullptr, 60, PROT_READ | PROT_WRITE, MAP_SHARED, number, 0), MAP_FAILED);
}

TEST(SealedPicture, memory_without_any_one_of_the_seals_is_refused) {
    EXPECT_TRUE(mapSealedPicture(memoryOf(60, allSeals), fiveByThree));
    for (const int missing : {F_SEAL_WRITE, F_SEAL_SHRINK, F_SEAL_GROW, allSeals}) {
        EXPECT_FALSE(mapSealedPicture(memoryOf(60, allSeals & ~missing), fiveByThree)) << missing;
    }
}

TEST(SealedPicture, memory_of_another_size_is_refused) {
    EXPECT_FALSE(mapSealedPicture(memoryOf(59, allSeals), fiveByThree));
    EXPECT_FALSE(mapSealedPicture(memoryOf(61, allSeals), fiveByThree));
    EXPECT_FALSE(mapSealedPicture(memoryOf(0, allSeals), fiveByThree));
    EXPECT_FALSE(mapSealedPicture(memoryOf(60, allSeals), {0, 3, 20, base::AlphaChannel::none}));
}

TEST(SealedPicture, what_is_no_such_memory_is_refused) {
    EXPECT_FALSE(
        mapSealedPicture(OwnedDescriptor(::open("/proc/self/exe", O_RDONLY)), fiveByThree));
    EXPECT_FALSE(mapSealedPicture(OwnedDescriptor(), fiveByThree));
}

}  // namespace
