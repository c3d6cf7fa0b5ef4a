#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "capture/text_recognizer.h"
#include "platform/helper/child_process.h"
#include "platform/tesseract/installed_languages.h"
#include "platform/tesseract/message_channel.h"

namespace platform::tesseract {

/// A recognition helper as a child of this process, from its start until it is killed and reaped.
/// After an error it is of no more use. Main thread.
class TextHelperProcess {
  public:
    /// Starts the program at `path`; returns without waiting for it. It inherits nothing but one
    /// end of a socket.
    static base::Result<std::unique_ptr<TextHelperProcess>> start(
        const std::string& path, const LanguageSelection& languages);

    /// Waits until the engine is loaded.
    base::Status waitUntilReady(const Deadline& deadline);
    /// Has a picture read. Only after `waitUntilReady`.
    base::Result<std::vector<capture::TextObservation>> read(const base::Image& image,
                                                             const Deadline& deadline);

    [[nodiscard]] const LanguageSelection& languages() const { return languages_; }
    /// Whether it has ended, or says something without being asked.
    [[nodiscard]] bool isSpoilt() const;
    /// Readable when the process has ended; negative where the kernel has no such thing.
    [[nodiscard]] int endDescriptor() const { return child_->endDescriptor(); }
    [[nodiscard]] int pid() const { return child_->pid(); }

  private:
    TextHelperProcess(std::unique_ptr<helper::ChildProcess> child, OwnedDescriptor socket,
                      LanguageSelection languages);

    base::Result<Message> receive(std::uint32_t serial, const Deadline& deadline);
    base::Error explain(ChannelFailure failure);

    std::unique_ptr<helper::ChildProcess> child_;
    MessageChannel channel_;
    LanguageSelection languages_;
    bool isReady_ = false;
    std::uint32_t lastSerial_ = 0;
};

}  // namespace platform::tesseract
