#include "platform/x11/icc_profile.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

#include "base/text.h"

namespace platform::x11 {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t versionOffset = 8;
constexpr std::size_t classOffset = 12;
constexpr std::size_t colorsOffset = 16;
constexpr std::size_t connectionOffset = 20;
constexpr std::size_t signatureOffset = 36;
constexpr std::size_t tagCountOffset = 128;
constexpr std::size_t tagTableOffset = 132;
constexpr std::size_t tagEntrySize = 12;
constexpr std::size_t signatureSize = 4;

/// The caller makes sure that the bytes are there.
std::size_t numberAt(Bytes bytes, std::size_t offset, std::size_t size = 4) {
    std::size_t number = 0;
    for (const std::uint8_t byte : bytes.subspan(offset, size)) {
        number = number << 8U | byte;
    }
    return number;
}

std::string_view signatureAt(Bytes bytes, std::size_t offset) {
    return {reinterpret_cast<const char*>(bytes.data()) + offset, signatureSize};
}

bool isOneOf(std::string_view signature, std::initializer_list<std::string_view> known) {
    return std::find(known.begin(), known.end(), signature) != known.end();
}

/// None when it does not lie in `bytes`.
std::optional<Bytes> part(Bytes bytes, std::size_t offset, std::size_t size) {
    if (offset > bytes.size() || size > bytes.size() - offset) {
        return std::nullopt;
    }
    return bytes.subspan(offset, size);
}

/// Of a header that is there as a whole.
bool describesRedGreenBlue(Bytes profile) {
    return signatureAt(profile, signatureOffset) == "acsp" &&
           signatureAt(profile, colorsOffset) == "RGB " &&
           isOneOf(signatureAt(profile, connectionOffset), {"XYZ ", "Lab "}) &&
           isOneOf(signatureAt(profile, classOffset), {"mntr", "scnr", "prtr", "spac"});
}

bool holdsItsTags(Bytes profile) {
    const std::size_t count = numberAt(profile, tagCountOffset);
    if (count > (profile.size() - tagTableOffset) / tagEntrySize) {
        return false;
    }
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t entry = tagTableOffset + index * tagEntrySize;
        if (!part(profile, numberAt(profile, entry + 4), numberAt(profile, entry + 8))) {
            return false;
        }
    }
    return true;
}

std::optional<Bytes> tagOf(Bytes profile, std::string_view signature) {
    const std::size_t count = numberAt(profile, tagCountOffset);
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t entry = tagTableOffset + index * tagEntrySize;
        if (signatureAt(profile, entry) == signature) {
            return part(profile, numberAt(profile, entry + 4), numberAt(profile, entry + 8));
        }
    }
    return std::nullopt;
}

void appendUtf8(std::string& text, std::size_t character) {
    const auto append = [&](std::size_t byte) { text.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | character >> 6U);
        append(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        append(0xE0 | character >> 12U);
        append(0x80 | (character >> 6U & 0x3F));
        append(0x80 | (character & 0x3F));
    } else {
        append(0xF0 | character >> 18U);
        append(0x80 | (character >> 12U & 0x3F));
        append(0x80 | (character >> 6U & 0x3F));
        append(0x80 | (character & 0x3F));
    }
}

/// A surrogate without its other half becomes bytes that are no UTF-8.
std::string utf8OfUtf16(Bytes bytes) {
    std::string text;
    for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
        std::size_t character = numberAt(bytes, at, 2);
        if ((character & 0xFC00) == 0xD800 && at + 4 <= bytes.size()) {
            const std::size_t low = numberAt(bytes, at + 2, 2);
            if ((low & 0xFC00) == 0xDC00) {
                character = 0x10000 + ((character & 0x3FF) << 10U) + (low & 0x3FF);
                at += 2;
            }
        }
        appendUtf8(text, character);
    }
    return text;
}

/// The form of version 2: type, four zeros, the length with its final zero, the letters.
std::string plainText(Bytes tag) {
    constexpr std::size_t lettersOffset = 12;
    if (tag.size() < lettersOffset) {
        return {};
    }
    const auto letters = part(tag, lettersOffset, numberAt(tag, 8));
    return letters ? std::string(letters->begin(), letters->end()) : std::string();
}

/// The form of version 4: type, four zeros, how many names, the size of a record, the records
/// (language, country, length and place of the name).
std::string localizedText(Bytes tag) {
    constexpr std::size_t recordsOffset = 16;
    constexpr std::size_t recordSize = 12;
    if (tag.size() < recordsOffset || numberAt(tag, 12) != recordSize) {
        return {};
    }
    const std::size_t count = std::min(numberAt(tag, 8), (tag.size() - recordsOffset) / recordSize);
    std::string first;
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t record = recordsOffset + index * recordSize;
        const auto name = part(tag, numberAt(tag, record + 8), numberAt(tag, record + 4));
        if (!name) {
            continue;
        }
        const std::string text = utf8OfUtf16(*name);
        if (signatureAt(tag, record).starts_with("en")) {
            return text;
        }
        if (first.empty()) {
            first = text;
        }
    }
    return first;
}

}  // namespace

std::optional<std::vector<std::uint8_t>> checkedIccProfile(std::vector<std::uint8_t> bytes) {
    if (bytes.size() < tagTableOffset) {
        return std::nullopt;
    }
    const std::size_t size = numberAt(bytes, 0);
    // Since version 4 the size is a multiple of four; readers of PNG files insist on it.
    constexpr std::uint8_t firstPaddedVersion = 4;
    const bool isPadded = bytes[versionOffset] < firstPaddedVersion || size % 4 == 0;
    if (size < tagTableOffset || size > bytes.size() || !isPadded) {
        return std::nullopt;
    }
    bytes.resize(size);
    if (!describesRedGreenBlue(bytes) || !holdsItsTags(bytes)) {
        return std::nullopt;
    }
    return bytes;
}

std::string iccDescription(const std::vector<std::uint8_t>& profile) {
    const auto tag = tagOf(profile, "desc");
    if (!tag || tag->size() < signatureSize) {
        return {};
    }
    std::string text;
    if (signatureAt(*tag, 0) == "desc") {
        text = plainText(*tag);
    } else if (signatureAt(*tag, 0) == "mluc") {
        text = localizedText(*tag);
    }
    text.resize(std::min(text.size(), text.find('\0')));
    return base::trimmed(text);
}

}  // namespace platform::x11
