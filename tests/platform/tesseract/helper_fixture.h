#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "base/image.h"
#include "desktop/wait.h"
#include "doubles/manual_main_queue.h"
#include "doubles/polled_watch.h"
#include "platform/freedesktop/temporary_directory.h"
#include "platform/tesseract/helper_text_recognizer.h"

namespace tesseract_tests {

using doubles::PolledWatch;
using freedesktop_tests::ScopedVariable;
using freedesktop_tests::TemporaryDirectory;
using platform::tesseract::HelperTextRecognizer;

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
