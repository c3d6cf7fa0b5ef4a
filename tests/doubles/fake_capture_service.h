#pragma once

#include <deque>
#include <optional>
#include <utility>
#include <vector>

#include "capture/capture_service.h"
#include "doubles/call_log.h"

namespace doubles {

/// A screen to capture from. Answers when the test says so, or at once, with what the test has put
/// there: one display and a picture of 2 x 2 pixels at first. In a call log: "shareable content",
/// "capture image".
class FakeCaptureService final : public capture::CaptureService, public Recorder {
  public:
    enum class Answers { byHand, atOnce };
    struct ContentRequest {
        capture::DesktopWindows desktopWindows;
        capture::WindowVisibility visibility;
    };
    struct ImageRequest {
        capture::ContentFilter filter;
        capture::StreamConfiguration configuration;
    };

    FakeCaptureService() {
        content.emplace();
        content->displays.push_back({1, {{0, 0}, {1920, 1080}}, 1.0, nullptr});
        image =
            base::Image::fromPixels(2, 2, std::vector<std::uint8_t>(16), base::AlphaChannel::none);
    }

    void shareableContent(capture::DesktopWindows desktopWindows,
                          capture::WindowVisibility visibility,
                          ContentCompletion completion) override {
        record("shareable content");
        contentRequests.push_back({desktopWindows, visibility});
        pendingContents_.push_back(std::move(completion));
        if (answers == Answers::atOnce) {
            answerContent();
        }
    }
    void captureImage(const capture::ContentFilter& filter,
                      const capture::StreamConfiguration& configuration,
                      ImageCompletion completion) override {
        record("capture image");
        imageRequests.push_back({filter, configuration});
        pendingImages_.push_back(std::move(completion));
        if (answers == Answers::atOnce) {
            answerImage();
        }
    }

    /// Answers the oldest content request that waits; false when none does.
    bool answerContent() { return answer(pendingContents_, content, contentError); }
    /// Answers the oldest image request that waits; false when none does.
    bool answerImage() { return answer(pendingImages_, image, imageError); }
    [[nodiscard]] std::size_t pendingContentCount() const { return pendingContents_.size(); }
    [[nodiscard]] std::size_t pendingImageCount() const { return pendingImages_.size(); }

    Answers answers = Answers::byHand;
    std::optional<capture::ShareableContent> content;
    std::optional<base::Error> contentError;
    std::optional<base::Image> image;
    std::optional<base::Error> imageError;
    std::vector<ContentRequest> contentRequests;
    std::vector<ImageRequest> imageRequests;

  private:
    template <typename Completion, typename Value>
    static bool answer(std::deque<Completion>& pending, const std::optional<Value>& value,
                       const std::optional<base::Error>& error) {
        if (pending.empty()) {
            return false;
        }
        const Completion completion = std::move(pending.front());
        pending.pop_front();
        completion(value, error);
        return true;
    }

    std::deque<ContentCompletion> pendingContents_;
    std::deque<ImageCompletion> pendingImages_;
};

}  // namespace doubles
