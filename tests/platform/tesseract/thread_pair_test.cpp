#include "platform/tesseract/thread_pair.h"

#include <gtest/gtest.h>

#include <mutex>
#include <numeric>
#include <set>
#include <stdexcept>

#include "meeting.h"

namespace platform::tesseract {

TEST(ThreadPair, every_part_is_done_once) {
    ThreadPair pair;
    for (const int parts : {0, 1, 2, 7, 500}) {
        std::vector<std::atomic<int>> counts(static_cast<std::size_t>(parts));
        pair.share(parts, [&](int part) { ++counts[static_cast<std::size_t>(part)]; });
        for (const auto& count : counts) {
            EXPECT_EQ(count, 1);
        }
    }
}

TEST(ThreadPair, two_parts_are_done_at_the_same_time) {
    ThreadPair pair;
    Meeting meeting;
    std::atomic<int> met{0};
    pair.share(2, [&](int part) { met += meeting.await(part) ? 1 : 0; });
    EXPECT_EQ(met, 2);
}

TEST(ThreadPair, whoever_waits_for_a_part_helps_with_what_that_part_shares) {
    ThreadPair pair;
    const ThreadPair::Use use(&pair);
    for (const int longer : {0, 1}) {
        Meeting begin;
        Meeting meeting;
        std::atomic<int> met{0};
        pair.share(2, [&](int part) {
            begin.await(part);
            if (part == longer) {
                shareParts(2, [&](int inner) { met += meeting.await(inner) ? 1 : 0; });
            }
        });
        EXPECT_EQ(met, 2) << longer;
    }
}

TEST(ThreadPair, what_a_part_throws_on_either_thread_comes_out_and_the_pair_goes_on) {
    ThreadPair pair;
    for (const int bad : {0, 1}) {
        Meeting meeting;
        EXPECT_THROW(pair.share(2,
                                [&](int part) {
                                    meeting.await(part);
                                    if (part == bad) {
                                        throw std::runtime_error("memory");
                                    }
                                }),
                     std::runtime_error);
    }
    std::atomic<int> count{0};
    pair.share(5, [&](int) { ++count; });
    EXPECT_EQ(count, 5);
}

TEST(ThreadPair, nothing_is_shared_by_a_thread_that_uses_none) {
    std::set<std::thread::id> threads;
    const auto note = [&](int) { threads.insert(std::this_thread::get_id()); };
    shareParts(10, note);
    ThreadPair pair;
    {
        const ThreadPair::Use use(&pair);
        const ThreadPair::Use none(nullptr);
        shareParts(10, note);
    }
    shareParts(10, note);
    EXPECT_EQ(threads, std::set{std::this_thread::get_id()});
}

TEST(ThreadPair, bands_cover_everything_once) {
    ThreadPair pair;
    const ThreadPair::Use use(&pair);
    for (const int count : {0, 1, 3, 1000}) {
        for (const int pixels : {1, 10'000, 8192}) {
            std::mutex mutex;
            std::multiset<int> seen;
            shareBands(count, pixels, [&](int first, int end) {
                const std::scoped_lock lock(mutex);
                for (int thing = first; thing < end; ++thing) {
                    seen.insert(thing);
                }
            });
            std::vector<int> all(static_cast<std::size_t>(count));
            std::iota(all.begin(), all.end(), 0);
            EXPECT_EQ(std::vector<int>(seen.begin(), seen.end()), all) << count << " " << pixels;
        }
    }
}

TEST(ThreadPair, a_sweep_looks_at_each_pixel_once_after_those_to_the_left_and_above) {
    ThreadPair pair;
    const ThreadPair::Use use(&pair);
    for (const auto& [width, height] :
         {std::pair{1, 1}, {1, 100'000}, {100'000, 1}, {700, 500}, {501, 333}, {2, 50'000}}) {
        // How far the rows were seen: what is to the left and above must be there.
        std::vector<std::atomic<int>> seen(static_cast<std::size_t>(height));
        std::atomic<int> mistakes{0};
        shareSweep(width, height, [&](const Patch& patch) {
            for (int y = patch.top; y < patch.bottom; ++y) {
                const auto row = static_cast<std::size_t>(y);
                const bool isAfterAbove = y == 0 || seen[row - 1] >= patch.right;
                mistakes += seen[row] != patch.left || !isAfterAbove ? 1 : 0;
                seen[row] = patch.right;
            }
        });
        EXPECT_EQ(mistakes, 0) << width << " x " << height;
        for (const auto& until : seen) {
            ASSERT_EQ(until, width) << height;
        }
    }
}

TEST(ThreadPair, a_sweep_is_shared) {
    ThreadPair pair;
    const ThreadPair::Use use(&pair);
    Meeting meeting;
    std::atomic<int> met{0};
    std::atomic<int> onLeft{0};
    // The first patch on the right is looked at while the second one on the left is.
    shareSweep(1000, 1000, [&](const Patch& patch) {
        const bool isOnLeft = patch.left == 0;
        if (isOnLeft ? ++onLeft == 2 : patch.top == 0) {
            met += meeting.await(isOnLeft ? 0 : 1) ? 1 : 0;
        }
    });
    EXPECT_EQ(met, 2);
}

}  // namespace platform::tesseract
