#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/alive.h"
#include "base/main_queue.h"
#include "capture/text_recognizer.h"
#include "platform/file_descriptor_watch.h"
#include "platform/tesseract/reading_time.h"

namespace platform::tesseract {

class TextHelperProcess;
struct LanguageSelection;

/// Has pictures read by the recognition helper, a confined process that is started at the first
/// need and ended when it was not used for a minute, so that the engine is never part of this
/// process. A helper that dies, hangs or answers nonsense fails that recognition; the next one
/// starts a fresh helper. Main thread.
class HelperTextRecognizer final : public capture::TextRecognizer {
  public:
    /// How long the helper may take; beyond that it hangs.
    struct Limits {
        /// Until it has loaded the engine: fifty times what it takes, for a cold disk.
        std::chrono::milliseconds start{10000};
        WaitingTime reading{};
        /// Without use, until it is ended.
        std::chrono::milliseconds idle{60000};
    };

    /// `helperPath` is the helper program; `mainQueue` outlives this.
    HelperTextRecognizer(std::string helperPath, base::MainQueue& mainQueue,
                         WatchFileDescriptor watch, Limits limits);
    HelperTextRecognizer(std::string helperPath, base::MainQueue& mainQueue,
                         WatchFileDescriptor watch)
        : HelperTextRecognizer(std::move(helperPath), mainQueue, std::move(watch), Limits()) {}
    ~HelperTextRecognizer() override;

    void prepare() override;
    base::Result<std::vector<capture::TextObservation>> recognize(
        const base::Image& image) override;

    /// Of the helper that is running, 0 when there is none.
    [[nodiscard]] int helperProcessIdentifier() const;

  private:
    base::Status ensureHelper();
    base::Status start(const LanguageSelection& languages);
    base::Result<std::vector<capture::TextObservation>> readWithHelper(const base::Image& image);
    void endLater();
    void endHelper();

    std::string helperPath_;
    base::MainQueue& mainQueue_;
    WatchFileDescriptor watch_;
    Limits limits_;
    base::Alive alive_;
    std::unique_ptr<TextHelperProcess> helper_;
    /// Reaps a helper that dies by itself; released before its descriptor closes.
    std::shared_ptr<void> endWatch_;
    /// Counts the uses, so that only the timer of the last one ends the helper.
    std::uint64_t useCount_ = 0;
};

}  // namespace platform::tesseract
