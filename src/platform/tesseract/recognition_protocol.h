#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "capture/text_recognizer.h"

namespace platform::tesseract {

/// What the resident program and the recognition helper say to each other: messages of a fixed
/// header and a payload of the length that the header gives, numbers of 32 bits in the machine's
/// byte order. The helper begins with `ready` or `failure`; each `picture`, whose pixels come along
/// as a descriptor, is answered with `observations` or `failure` under the same serial number. What
/// is read is checked as if it came from a stranger, on both sides.
enum class MessageType : std::uint32_t { ready = 1, picture, observations, failure };

struct MessageHeader {
    MessageType type = MessageType::ready;
    /// Of the picture that is sent or answered; 0 before the first.
    std::uint32_t serial = 0;
    std::uint32_t payloadLength = 0;
};

/// In bytes.
inline constexpr std::size_t headerLength = 16;
/// A page of a hundred thousand characters with ten candidates a line is a quarter of this.
inline constexpr std::uint32_t maximumPayloadLength = 16U << 20U;
/// 8192 x 8192: four times the largest display on sale.
inline constexpr std::uint64_t maximumPixelCount = std::uint64_t{1} << 26U;

/// How the bytes of a picture lie in its memory; lengths in pixels and bytes.
struct PictureShape {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bytesPerRow = 0;
    base::AlphaChannel alphaChannel = base::AlphaChannel::none;
    friend bool operator==(const PictureShape&, const PictureShape&) = default;
};

/// Whether a picture of that shape may be sent: not empty, rows that hold their pixels, not larger
/// than `maximumPixelCount`.
bool isAcceptable(const PictureShape& shape);

/// Each gives a whole message, header included.
std::string encodeReady();
std::string encodePicture(std::uint32_t serial, const PictureShape& shape);
/// Control characters become spaces and a candidate that is not UTF-8 is left out, so that what the
/// engine makes of a picture cannot make the message invalid. A `failure` when it gets too long.
std::string encodeObservations(std::uint32_t serial,
                               const std::vector<capture::TextObservation>& observations);
std::string encodeFailure(std::uint32_t serial, const base::Error& error);

/// Nothing when the bytes are not a header or announce more than a message may hold.
std::optional<MessageHeader> decodeHeader(std::string_view bytes);
/// The payloads; nothing when a length, a count or a value is not as it must be, a text is not
/// UTF-8 or holds control characters, or anything is left over.
std::optional<PictureShape> decodePicture(std::string_view payload);
std::optional<std::vector<capture::TextObservation>> decodeObservations(std::string_view payload);
std::optional<base::Error> decodeFailure(std::string_view payload);

}  // namespace platform::tesseract
