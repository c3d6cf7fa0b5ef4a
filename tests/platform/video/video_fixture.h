#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "desktop/wait.h"
#include "doubles/manual_main_queue.h"
#include "doubles/polled_watch.h"
#include "platform/freedesktop/temporary_directory.h"
#include "platform/video/film_resources.h"
#include "video/film_maker.h"

namespace video_tests {

using Answer = base::Result<ui::VideoFrame>;

/// Films of the test's making, played by a helper program.
class VideoFixture : public testing::Test {
  protected:
    VideoFixture() = default;
    explicit VideoFixture(std::string helper) : helper_(std::move(helper)) {}

    [[nodiscard]] std::filesystem::path film(const std::string& name = "film") const {
        return directory_.path() + "/" + name + ".mp4";
    }
    void open(const std::string& name = "film") {
        auto opened = resources_.open(name);
        ASSERT_TRUE(opened) << opened.error().sentence;
        looper_ = std::get<std::unique_ptr<ui::VideoLooper>>(std::move(opened.value()));
    }
    /// The next picture, or why there is none; an answer that does not come is a failed test.
    Answer next(base::PixelSize size = {128, 96}) {
        std::optional<Answer> answer;
        looper_->nextFrame(size, [&](Answer given) { answer = std::move(given); });
        EXPECT_FALSE(answer) << "the answer came before its turn";
        desktop::require("an answer", [&] {
            watch_.dispatch();
            queue_.runAll();
            return answer.has_value();
        });
        return *answer;
    }
    /// The numbers that the next pictures show.
    std::vector<int> nextNumbers(int count) {
        std::vector<int> numbers;
        for (int picture = 0; picture < count; ++picture) {
            const Answer answer = next();
            numbers.push_back(answer ? numberIn(answer.value().image) : -2);
        }
        return numbers;
    }
    /// When the next pictures are due, in microseconds; -1 for an error.
    std::vector<std::int64_t> nextTimes(int count) {
        std::vector<std::int64_t> times;
        for (int picture = 0; picture < count; ++picture) {
            const Answer answer = next();
            times.push_back(answer ? answer.value().time.count() : -1);
        }
        return times;
    }

    freedesktop_tests::TemporaryDirectory directory_;
    doubles::ManualMainQueue queue_;
    doubles::PolledWatch watch_;
    std::string helper_ = LUMAFRAME_VIDEO_HELPER;
    platform::video::FilmResources resources_{directory_.path(), helper_, queue_, watch_.watch()};
    std::unique_ptr<ui::VideoLooper> looper_;
};

}  // namespace video_tests
