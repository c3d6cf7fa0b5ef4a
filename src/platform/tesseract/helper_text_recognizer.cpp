#include "platform/tesseract/helper_text_recognizer.h"

#include <utility>

#include "platform/tesseract/installed_languages.h"
#include "platform/tesseract/sealed_picture.h"
#include "platform/tesseract/text_helper_process.h"

namespace platform::tesseract {

namespace {

Deadline after(std::chrono::milliseconds time) {
    return std::chrono::steady_clock::now() + time;
}

}  // namespace

HelperTextRecognizer::HelperTextRecognizer(std::string helperPath, base::MainQueue& mainQueue,
                                           WatchFileDescriptor watch, Limits limits)
    : helperPath_(std::move(helperPath)),
      mainQueue_(mainQueue),
      watch_(std::move(watch)),
      limits_(limits) {}

HelperTextRecognizer::~HelperTextRecognizer() {
    endHelper();
}

void HelperTextRecognizer::prepare() {
    // What goes wrong here goes wrong again, and is told, when there is a picture.
    if (ensureHelper()) {
        endLater();
    }
}

base::Result<std::vector<capture::TextObservation>> HelperTextRecognizer::recognize(
    const base::Image& image) {
    if (!isAcceptable(sealedShapeOf(image))) {
        return base::Error{base::ErrorKind::invalid,
                           image.isEmpty() ? "The picture is empty."
                                           : "The picture is too large for text recognition."};
    }
    if (auto status = ensureHelper(); !status) {
        return status.error();
    }
    auto observations = readWithHelper(image);
    if (observations) {
        endLater();
    } else {
        endHelper();
    }
    return observations;
}

base::Result<std::vector<capture::TextObservation>> HelperTextRecognizer::readWithHelper(
    const base::Image& image) {
    if (auto status = helper_->waitUntilReady(after(limits_.start)); !status) {
        return status.error();
    }
    const auto pixelCount = std::int64_t{image.width()} * image.height();
    return helper_->read(image, after(limits_.reading.forPixels(pixelCount)));
}

/// A helper that can be used is running afterwards, though it may still be loading.
base::Status HelperTextRecognizer::ensureHelper() {
    const auto languages = selectLanguages(LanguageVariables::fromEnvironment());
    if (!languages) {
        endHelper();
        return languages.error();
    }
    if (helper_ && (helper_->isSpoilt() || helper_->languages() != languages.value())) {
        endHelper();
    }
    return helper_ ? base::Status(base::Nothing{}) : start(languages.value());
}

base::Status HelperTextRecognizer::start(const LanguageSelection& languages) {
    auto helper = TextHelperProcess::start(helperPath_, languages);
    if (!helper) {
        return helper.error();
    }
    helper_ = std::move(helper.value());
    if (helper_->endDescriptor() >= 0) {
        // Not from inside the call of the watch that goes away with the helper.
        endWatch_ = watch_(helper_->endDescriptor(), [this, pid = helperProcessIdentifier()] {
            mainQueue_.post(alive_.guard([this, pid] {
                if (helperProcessIdentifier() == pid) {
                    endHelper();
                }
            }));
        });
    }
    return base::Nothing{};
}

void HelperTextRecognizer::endLater() {
    mainQueue_.postAfter(limits_.idle, alive_.guard([this, use = ++useCount_] {
        if (use == useCount_) {
            endHelper();
        }
    }));
}

void HelperTextRecognizer::endHelper() {
    endWatch_.reset();
    helper_.reset();
}

int HelperTextRecognizer::helperProcessIdentifier() const {
    return helper_ ? static_cast<int>(helper_->pid()) : 0;
}

}  // namespace platform::tesseract
