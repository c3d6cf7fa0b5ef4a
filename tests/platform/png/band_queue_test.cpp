#include "platform/png/band_queue.h"

#include <gtest/gtest.h>

#include <future>
#include <vector>

namespace {

using platform::png::BandQueue;

TEST(BandQueue, gives_from_the_front_and_from_the_back_until_they_meet) {
    BandQueue queue(5);

    EXPECT_EQ(queue.takeFirst(), 0);
    EXPECT_EQ(queue.takeLast(), 4);
    EXPECT_EQ(queue.takeLast(), 3);
    EXPECT_EQ(queue.takeFirst(), 1);
    EXPECT_EQ(queue.takeFirst(), 2);
    EXPECT_EQ(queue.takeFirst(), std::nullopt);
    EXPECT_EQ(queue.takeLast(), std::nullopt);
}

TEST(BandQueue, two_threads_get_each_band_once) {
    constexpr int count = 20000;
    BandQueue queue(count);
    std::vector<int> taken(count);
    auto helper = std::async(std::launch::async, [&] {
        while (const auto band = queue.takeLast()) {
            ++taken[static_cast<std::size_t>(*band)];
        }
    });
    while (const auto band = queue.takeFirst()) {
        ++taken[static_cast<std::size_t>(*band)];
    }
    helper.get();

    EXPECT_EQ(taken, std::vector<int>(count, 1));
}

}  // namespace
