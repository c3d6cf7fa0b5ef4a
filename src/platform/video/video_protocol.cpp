#include "platform/video/video_protocol.h"

#include <algorithm>
#include <cstring>

#include "platform/video/frame_memory.h"

namespace platform::video {

namespace {

constexpr std::uint32_t requestMark = 0x4c665671;
constexpr std::uint32_t answerMark = 0x4c665661;

struct RawRequest {
    std::uint32_t mark;
    std::uint32_t slot;
    std::uint32_t width;
    std::uint32_t height;
};
static_assert(sizeof(RawRequest) == requestLength);

constexpr std::size_t maximumSentenceLength = 224;

struct RawAnswer {
    std::uint32_t mark;
    std::uint32_t kind;
    std::int64_t time;
    std::uint32_t slot;
    std::uint16_t width;
    std::uint16_t height;
    std::uint64_t sentenceLength;
    char sentence[maximumSentenceLength];
};
static_assert(sizeof(RawAnswer) == answerLength);

template <typename Raw>
std::string bytesOf(const Raw& raw) {
    std::string bytes(sizeof raw, '\0');
    std::memcpy(bytes.data(), &raw, sizeof raw);
    return bytes;
}

template <typename Raw>
std::optional<Raw> rawOf(std::string_view packet, std::uint32_t mark) {
    Raw raw{};
    if (packet.size() != sizeof raw) {
        return std::nullopt;
    }
    std::memcpy(&raw, packet.data(), sizeof raw);
    return raw.mark == mark ? std::optional(raw) : std::nullopt;
}

std::optional<FrameRequest> acceptable(std::uint32_t slot, std::uint32_t width,
                                       std::uint32_t height) {
    constexpr std::uint32_t beyond = 1U << 16U;
    if (slot >= slotCount || width >= beyond || height >= beyond) {
        return std::nullopt;
    }
    const FrameRequest request{static_cast<int>(slot),
                               {static_cast<int>(width), static_cast<int>(height)}};
    return fitsSlot(request.size) ? std::optional(request) : std::nullopt;
}

bool isControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7f;
}

}  // namespace

std::string encodeRequest(const FrameRequest& request) {
    return bytesOf(RawRequest{.mark = requestMark,
                              .slot = static_cast<std::uint32_t>(request.slot),
                              .width = static_cast<std::uint32_t>(request.size.width),
                              .height = static_cast<std::uint32_t>(request.size.height)});
}

std::string encodeAnswer(const FrameAnswer& answer) {
    RawAnswer raw{.mark = answerMark,
                  .kind = static_cast<std::uint32_t>(answer.kind),
                  .time = answer.time.count(),
                  .slot = static_cast<std::uint32_t>(answer.request.slot),
                  .width = static_cast<std::uint16_t>(answer.request.size.width),
                  .height = static_cast<std::uint16_t>(answer.request.size.height),
                  .sentenceLength = std::min(answer.sentence.size(), maximumSentenceLength),
                  .sentence = {}};
    std::replace_copy_if(answer.sentence.begin(),
                         answer.sentence.begin() + static_cast<std::ptrdiff_t>(raw.sentenceLength),
                         raw.sentence, isControl, ' ');
    return bytesOf(raw);
}

std::optional<FrameRequest> decodeRequest(std::string_view packet) {
    const auto raw = rawOf<RawRequest>(packet, requestMark);
    return raw ? acceptable(raw->slot, raw->width, raw->height) : std::nullopt;
}

std::optional<FrameAnswer> decodeAnswer(std::string_view packet) {
    const auto raw = rawOf<RawAnswer>(packet, answerMark);
    if (!raw || raw->kind < static_cast<std::uint32_t>(AnswerKind::frame) ||
        raw->kind > static_cast<std::uint32_t>(AnswerKind::failure) || raw->time < 0 ||
        raw->sentenceLength > maximumSentenceLength) {
        return std::nullopt;
    }
    const auto request = acceptable(raw->slot, raw->width, raw->height);
    const std::string sentence(raw->sentence, raw->sentenceLength);
    const auto kind = static_cast<AnswerKind>(raw->kind);
    if (!request || std::ranges::any_of(sentence, isControl) ||
        sentence.empty() == (kind == AnswerKind::failure)) {
        return std::nullopt;
    }
    return FrameAnswer{kind, *request, std::chrono::microseconds(raw->time), sentence};
}

}  // namespace platform::video
