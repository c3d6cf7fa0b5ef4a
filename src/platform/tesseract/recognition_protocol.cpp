#include "platform/tesseract/recognition_protocol.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstring>

namespace platform::tesseract {

namespace {

constexpr std::uint32_t magicNumber = 0x4c665478;
constexpr std::uint32_t maximumObservationCount = 200000;
constexpr std::uint32_t maximumCandidateCount = 64;
constexpr std::size_t maximumSentenceLength = 1000;

void append(std::string& bytes, std::uint32_t number) {
    char raw[sizeof number];
    std::memcpy(raw, &number, sizeof number);
    bytes.append(raw, sizeof number);
}

void append(std::string& bytes, const std::string& text) {
    append(bytes, static_cast<std::uint32_t>(text.size()));
    bytes += text;
}

std::string message(MessageType type, std::uint32_t serial, const std::string& payload) {
    std::string bytes;
    bytes.reserve(headerLength + payload.size());
    append(bytes, magicNumber);
    append(bytes, static_cast<std::uint32_t>(type));
    append(bytes, serial);
    append(bytes, static_cast<std::uint32_t>(payload.size()));
    return bytes + payload;
}

bool isControlCharacter(utf8proc_int32_t character) {
    return character < 0x20 || (character >= 0x7f && character < 0xa0);
}

/// Valid UTF-8 without control characters.
bool isPlainText(std::string_view text) {
    const auto* position = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    auto left = static_cast<utf8proc_ssize_t>(text.size());
    while (left > 0) {
        utf8proc_int32_t character = 0;
        const utf8proc_ssize_t length = utf8proc_iterate(position, left, &character);
        if (length <= 0 || isControlCharacter(character)) {
            return false;
        }
        position += length;
        left -= length;
    }
    return true;
}

std::string withoutControlCharacters(std::string text) {
    const auto isControl = [](char byte) {
        return isControlCharacter(static_cast<unsigned char>(byte)) &&
               static_cast<unsigned char>(byte) < 0x80;
    };
    std::replace_if(text.begin(), text.end(), isControl, ' ');
    return text;
}

/// Takes a payload apart from its front; once something was not there, nothing is.
class PayloadReader {
  public:
    explicit PayloadReader(std::string_view payload) : rest_(payload) {}

    std::optional<std::uint32_t> number(std::uint32_t maximum) {
        std::uint32_t value = 0;
        if (rest_.size() < sizeof value) {
            return std::nullopt;
        }
        std::memcpy(&value, rest_.data(), sizeof value);
        rest_.remove_prefix(sizeof value);
        return value <= maximum ? std::optional(value) : std::nullopt;
    }
    std::optional<std::string> text() {
        const auto length = number(maximumPayloadLength);
        if (!length || *length > rest_.size() || !isPlainText(rest_.substr(0, *length))) {
            return std::nullopt;
        }
        std::string text(rest_.substr(0, *length));
        rest_.remove_prefix(*length);
        return text;
    }
    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }

  private:
    std::string_view rest_;
};

std::optional<capture::TextObservation> readObservation(PayloadReader& reader) {
    const auto count = reader.number(maximumCandidateCount);
    if (!count) {
        return std::nullopt;
    }
    capture::TextObservation observation;
    for (std::uint32_t index = 0; index < *count; ++index) {
        auto candidate = reader.text();
        if (!candidate) {
            return std::nullopt;
        }
        observation.candidates.push_back(std::move(*candidate));
    }
    return observation;
}

void append(std::string& payload, const capture::TextObservation& observation) {
    std::vector<std::string> candidates;
    for (const std::string& candidate : observation.candidates) {
        std::string text = withoutControlCharacters(candidate);
        if (isPlainText(text) && candidates.size() < maximumCandidateCount) {
            candidates.push_back(std::move(text));
        }
    }
    append(payload, static_cast<std::uint32_t>(candidates.size()));
    for (const std::string& candidate : candidates) {
        append(payload, candidate);
    }
}

}  // namespace

bool isAcceptable(const PictureShape& shape) {
    const std::uint64_t pixelCount = std::uint64_t{shape.width} * shape.height;
    return pixelCount > 0 && pixelCount <= maximumPixelCount &&
           shape.bytesPerRow >= std::uint64_t{shape.width} * 4 &&
           std::uint64_t{shape.bytesPerRow} * shape.height <= maximumPixelCount * 8;
}

std::string encodeReady() {
    return message(MessageType::ready, 0, {});
}

std::string encodePicture(std::uint32_t serial, const PictureShape& shape) {
    std::string payload;
    append(payload, shape.width);
    append(payload, shape.height);
    append(payload, shape.bytesPerRow);
    append(payload, shape.alphaChannel == base::AlphaChannel::premultiplied ? 1U : 0U);
    return message(MessageType::picture, serial, payload);
}

std::string encodeObservations(std::uint32_t serial,
                               const std::vector<capture::TextObservation>& observations) {
    std::string payload;
    append(payload, static_cast<std::uint32_t>(observations.size()));
    for (const capture::TextObservation& observation : observations) {
        append(payload, observation);
        if (payload.size() > maximumPayloadLength) {
            break;
        }
    }
    if (observations.size() > maximumObservationCount || payload.size() > maximumPayloadLength) {
        return encodeFailure(
            serial, {base::ErrorKind::failed, "The picture holds more text than can be handled."});
    }
    return message(MessageType::observations, serial, payload);
}

std::string encodeFailure(std::uint32_t serial, const base::Error& error) {
    std::string sentence = withoutControlCharacters(error.sentence);
    if (sentence.empty() || sentence.size() > maximumSentenceLength || !isPlainText(sentence)) {
        sentence = "The text recognition helper failed.";
    }
    std::string payload;
    append(payload, static_cast<std::uint32_t>(error.kind));
    append(payload, sentence);
    return message(MessageType::failure, serial, payload);
}

std::optional<MessageHeader> decodeHeader(std::string_view bytes) {
    constexpr auto any = ~std::uint32_t{0};
    PayloadReader reader(bytes);
    const auto magic = reader.number(any);
    const auto type = reader.number(static_cast<std::uint32_t>(MessageType::failure));
    const auto serial = reader.number(any);
    const auto length = reader.number(maximumPayloadLength);
    const bool isHeader =
        magic == magicNumber && type && *type != 0 && serial && length && reader.isAtEnd();
    if (!isHeader) {
        return std::nullopt;
    }
    return MessageHeader{static_cast<MessageType>(*type), *serial, *length};
}

std::optional<PictureShape> decodePicture(std::string_view payload) {
    constexpr auto any = ~std::uint32_t{0};
    PayloadReader reader(payload);
    const auto width = reader.number(any);
    const auto height = reader.number(any);
    const auto bytesPerRow = reader.number(any);
    const auto alpha = reader.number(1);
    if (!width || !height || !bytesPerRow || !alpha || !reader.isAtEnd()) {
        return std::nullopt;
    }
    const PictureShape shape{
        *width, *height, *bytesPerRow,
        *alpha == 1 ? base::AlphaChannel::premultiplied : base::AlphaChannel::none};
    return isAcceptable(shape) ? std::optional(shape) : std::nullopt;
}

std::optional<std::vector<capture::TextObservation>> decodeObservations(std::string_view payload) {
    PayloadReader reader(payload);
    const auto count = reader.number(maximumObservationCount);
    if (!count) {
        return std::nullopt;
    }
    std::vector<capture::TextObservation> observations;
    for (std::uint32_t index = 0; index < *count; ++index) {
        auto observation = readObservation(reader);
        if (!observation) {
            return std::nullopt;
        }
        observations.push_back(std::move(*observation));
    }
    return reader.isAtEnd() ? std::optional(std::move(observations)) : std::nullopt;
}

std::optional<base::Error> decodeFailure(std::string_view payload) {
    PayloadReader reader(payload);
    const auto kind = reader.number(static_cast<std::uint32_t>(base::ErrorKind::failed));
    auto sentence = reader.text();
    if (!kind || !sentence || sentence->empty() || sentence->size() > maximumSentenceLength ||
        !reader.isAtEnd()) {
        return std::nullopt;
    }
    if (static_cast<base::ErrorKind>(*kind) == base::ErrorKind::notFound) {
        // To its caller that is a recogniser without an answer, about which nothing is said.
        return std::nullopt;
    }
    return base::Error{static_cast<base::ErrorKind>(*kind), std::move(*sentence)};
}

}  // namespace platform::tesseract
