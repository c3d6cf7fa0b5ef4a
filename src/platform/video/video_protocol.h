#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/geometry.h"

namespace platform::video {

/// What the resident program and the video helper say to each other: packets of a fixed length,
/// numbers in the machine's byte order. Each request is answered once. What is read is checked as
/// if it came from a stranger, on both sides.
struct FrameRequest {
    /// Which part of the shared memory the picture goes to.
    int slot = 0;
    base::PixelSize size;
    friend bool operator==(const FrameRequest&, const FrameRequest&) = default;
};

enum class AnswerKind : std::uint32_t {
    frame = 1,
    /// The file has no video track.
    noVideo,
    /// It cannot be played; there is no further answer.
    failure,
};

struct FrameAnswer {
    AnswerKind kind = AnswerKind::frame;
    /// The request that it answers.
    FrameRequest request;
    /// When the picture is due, since the first one.
    std::chrono::microseconds time{0};
    /// Why it cannot be played: one sentence.
    std::string sentence{};
    friend bool operator==(const FrameAnswer&, const FrameAnswer&) = default;
};

/// In bytes.
inline constexpr std::size_t requestLength = 16;
inline constexpr std::size_t answerLength = 256;

std::string encodeRequest(const FrameRequest& request);
/// Control characters become spaces, and a sentence that is too long is cut.
std::string encodeAnswer(const FrameAnswer& answer);

/// Nothing when the packet's length or a value is not as it must be, or a slot or a size is not one
/// of the frame memory.
std::optional<FrameRequest> decodeRequest(std::string_view packet);
std::optional<FrameAnswer> decodeAnswer(std::string_view packet);

}  // namespace platform::video
