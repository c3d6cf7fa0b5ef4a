#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz_input.h"

namespace fuzz {

// Messages of D-Bus as they are on the wire, in the order of bytes of this machine.
// Source: D-Bus Specification 0.38, "Message Protocol".

enum class MessageType : std::uint8_t { call = 1, reply = 2, error = 3, signal = 4 };

struct Message {
    MessageType type = MessageType::call;
    bool wantsReply = true;
    std::uint32_t serial = 0;
    std::string path{};
    std::string interface {};
    std::string member{};
    std::string errorName{};
    std::string sender{};
    std::uint32_t replySerial = 0;
    std::string signature{};
    std::vector<std::uint8_t> body{};
};

/// The values of a message, one behind the other.
class BodyWriter {
  public:
    void number(std::uint64_t value, std::size_t size);
    void text(std::string_view text);
    void signature(std::string_view signature);
    /// Values of all types of `signature`, made up.
    void madeUp(std::string_view signature, Input& input, int depth = 0);

    void align(std::size_t size) { bytes_.resize((bytes_.size() + size - 1) / size * size); }
    [[nodiscard]] std::vector<std::uint8_t> take() { return std::move(bytes_); }

  private:
    void array(std::string_view element, Input& input, int depth);

    std::vector<std::uint8_t> bytes_;
};

/// Reads values of a message that the bus library has written; ends the program as a crash where
/// there are none.
class BodyReader {
  public:
    explicit BodyReader(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}
    std::uint64_t number(std::size_t size);
    std::string text();
    std::string signature();
    void align(std::size_t size) { at_ = (at_ + size - 1) / size * size; }
    [[nodiscard]] std::size_t place() const { return at_; }

  private:
    std::string bytes(std::size_t size);

    std::vector<std::uint8_t> bytes_;
    std::size_t at_ = 0;
};

/// A signature of up to four values, made up.
std::string madeUpSignature(Input& input);
/// A text of UTF-8 without a zero, made up.
std::string madeUpText(Input& input);

std::vector<std::uint8_t> bytesOf(const Message& message);
/// The first message of `bytes`, which is taken away there; none while it is not whole.
std::optional<Message> takeMessage(std::vector<std::uint8_t>& bytes);

}  // namespace fuzz
