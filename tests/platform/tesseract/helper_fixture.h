#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "base/image.h"
#include "desktop/wait.h"
#include "doubles/manual_main_queue.h"
#include "platform/freedesktop/temporary_directory.h"
#include "platform/tesseract/helper_text_recognizer.h"

namespace tesseract_tests {

using freedesktop_tests::ScopedVariable;
using freedesktop_tests::TemporaryDirectory;
using platform::tesseract::HelperTextRecognizer;

/// Watches descriptors when the test says so.
class PolledWatch {
  public:
    [[nodiscard]] platform::WatchFileDescriptor watch() {
        return [this](int number, std::function<void()> onReadable) -> std::shared_ptr<void> {
            auto entry = std::make_shared<Entry>(Entry{number, std::move(onReadable)});
            entries_.push_back(entry);
            return entry;
        };
    }
    /// Calls what is due; whether there was something.
    bool dispatch() {
        bool isReadable = false;
        for (const auto& weak : std::vector<std::weak_ptr<Entry>>(entries_)) {
            const auto entry = weak.lock();
            pollfd watched{entry ? entry->number : -1, POLLIN, 0};
            if (entry && ::poll(&watched, 1, 0) > 0) {
                entry->onReadable();
                isReadable = true;
            }
        }
        return isReadable;
    }

  private:
    struct Entry {
        int number;
        std::function<void()> onReadable;
    };
    std::vector<std::weak_ptr<Entry>> entries_;
};

/// Whether this process has children, dead ones that were not reaped included.
inline bool hasChildren() {
    siginfo_t information{};
    return ::waitid(P_ALL, 0, &information, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

inline base::Image blankPicture(int width = 64, int height = 32) {
    const auto length = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    return base::Image::fromPixels(width, height, std::vector<std::uint8_t>(length, 255),
                                   base::AlphaChannel::none);
}

/// Only the texts that come first.
inline std::vector<std::string> textsOf(
    const base::Result<std::vector<capture::TextObservation>>& result) {
    std::vector<std::string> texts;
    if (!result) {
        ADD_FAILURE() << result.error().sentence;
        return texts;
    }
    for (const capture::TextObservation& observation : result.value()) {
        texts.push_back(observation.candidates.empty() ? "" : observation.candidates.front());
    }
    return texts;
}

/// A recogniser whose helper is a program of the test's choice, in a world without other languages.
class HelperFixture : public testing::Test {
  protected:
    HelperFixture() { queue_.allowLeftovers(); }
    ~HelperFixture() override {
        recognizer_.reset();
        EXPECT_FALSE(hasChildren()) << "a helper was left behind";
    }
    HelperTextRecognizer& use(const std::string& program,
                              const HelperTextRecognizer::Limits& limits = {}) {
        recognizer_ =
            std::make_unique<HelperTextRecognizer>(program, queue_, watch_.watch(), limits);
        return *recognizer_;
    }

    TemporaryDirectory directory_;
    ScopedVariable lcAll_{"LC_ALL", "C.UTF-8"};
    doubles::ManualMainQueue queue_;
    PolledWatch watch_;
    std::unique_ptr<HelperTextRecognizer> recognizer_;
};

}  // namespace tesseract_tests
