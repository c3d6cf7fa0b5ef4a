#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <variant>

#include "platform/helper/owned_descriptor.h"
#include "platform/tesseract/recognition_protocol.h"

namespace platform::tesseract {

using helper::OwnedDescriptor;

/// One message as it was received.
struct Message {
    MessageHeader header;
    std::string payload;
    /// What came along; open only where descriptors are welcome.
    OwnedDescriptor descriptor;
};

/// Why no message could be sent or received; the channel is of no more use then.
enum class ChannelFailure {
    /// The other side has closed its end, or is gone.
    closed,
    timedOut,
    /// What came is not a message.
    nonsense,
};

/// The moment when a wait is given up; nothing waits for ever.
using Deadline = std::optional<std::chrono::steady_clock::time_point>;

/// What may come along with a message.
enum class Attachment { none, oneDescriptor };

/// Sends and receives whole messages over a stream socket. One thread.
class MessageChannel {
  public:
    /// `attachment` says what this side accepts; other descriptors never enter the process.
    MessageChannel(OwnedDescriptor socket, Attachment attachment)
        : socket_(std::move(socket)), attachment_(attachment) {}

    /// Sends `message`, and with it a copy of the descriptor number `attached` unless that is
    /// negative.
    std::optional<ChannelFailure> send(const std::string& message, const Deadline& deadline,
                                       int attached = -1);
    std::variant<Message, ChannelFailure> receive(const Deadline& deadline);
    /// Whether the other side has sent something, or closed its end; by the end of `wait`.
    [[nodiscard]] bool hasInput(std::chrono::milliseconds wait = {}) const;

  private:
    std::optional<ChannelFailure> waitFor(short events, const Deadline& deadline) const;
    std::optional<ChannelFailure> receiveInto(char* bytes, std::size_t length,
                                              const Deadline& deadline,
                                              OwnedDescriptor& descriptor);

    OwnedDescriptor socket_;
    Attachment attachment_;
};

}  // namespace platform::tesseract
