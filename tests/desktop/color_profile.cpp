#include "desktop/color_profile.h"

#include <cmath>
#include <cstddef>

namespace desktop {
namespace {

using Bytes = std::vector<std::uint8_t>;

void append(Bytes& bytes, const std::string& text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

void appendNumber(Bytes& bytes, std::size_t number, int size = 4) {
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(number >> static_cast<unsigned>(shift)));
    }
}

void appendFixed(Bytes& bytes, double number) {
    appendNumber(bytes, static_cast<std::uint32_t>(std::lround(number * 65536)));
}

/// Type and the four zeros behind it.
Bytes tagOfType(const std::string& type) {
    Bytes tag;
    append(tag, type);
    appendNumber(tag, 0);
    return tag;
}

Bytes plainDescription(const std::string& text) {
    Bytes tag = tagOfType("desc");
    appendNumber(tag, text.size() + 1);
    append(tag, text);
    // The final zero, then no Unicode and no Macintosh form.
    tag.resize(tag.size() + 1 + 8 + 3 + 67);
    return tag;
}

Bytes localizedDescription(const std::vector<std::pair<std::string, std::string>>& names) {
    Bytes tag = tagOfType("mluc");
    appendNumber(tag, names.size());
    appendNumber(tag, 12);
    std::size_t offset = 16 + 12 * names.size();
    for (const auto& [language, name] : names) {
        append(tag, language + "XX");
        appendNumber(tag, name.size() * 2);
        appendNumber(tag, offset);
        offset += name.size() * 2;
    }
    for (const auto& [language, name] : names) {
        for (const char letter : name) {
            appendNumber(tag, static_cast<unsigned char>(letter), 2);
        }
    }
    return tag;
}

Bytes place(double x, double y, double z) {
    Bytes tag = tagOfType("XYZ ");
    appendFixed(tag, x);
    appendFixed(tag, y);
    appendFixed(tag, z);
    return tag;
}

Bytes curve(double gamma) {
    Bytes tag = tagOfType("curv");
    appendNumber(tag, 1);
    appendNumber(tag, static_cast<std::size_t>(std::lround(gamma * 256)), 2);
    return tag;
}

/// Everything after the size.
Bytes header(ColorProfile::Version version) {
    Bytes bytes;
    appendNumber(bytes, 0);
    appendNumber(bytes, static_cast<std::size_t>(version) << 24U);
    append(bytes, "mntrRGB XYZ ");
    for (const std::size_t part : {2026U, 1U, 2U, 3U, 4U, 5U}) {
        appendNumber(bytes, part, 2);
    }
    append(bytes, "acsp");
    // Platform, flags, maker, model, attributes, intent.
    bytes.resize(bytes.size() + 28);
    appendFixed(bytes, 0.9642);
    appendFixed(bytes, 1);
    appendFixed(bytes, 0.8249);
    bytes.resize(124);
    return bytes;
}

}  // namespace

Bytes ColorProfile::bytes() const {
    const std::vector<std::pair<std::string, Bytes>> tags{
        {"desc", version == Version::two ? plainDescription(descriptions.front().second)
                                         : localizedDescription(descriptions)},
        {"cprt", version == Version::two ? tagOfType("text") : localizedDescription({{"en", "-"}})},
        {"wtpt", place(0.9642, 1, 0.8249)},
        {"rXYZ", place(0.4361, 0.2225, 0.0139)},
        {"gXYZ", place(0.3851, 0.7169, 0.0971)},
        {"bXYZ", place(0.1431, 0.0606, 0.7139)},
        {"rTRC", curve(gamma)},
        {"gTRC", curve(gamma)},
        {"bTRC", curve(gamma)},
    };
    const auto padded = [](std::size_t size) { return (size + 3) / 4 * 4; };
    Bytes profile = header(version);
    std::size_t offset = 128 + 4 + 12 * tags.size();
    appendNumber(profile, tags.size());
    for (const auto& [name, data] : tags) {
        append(profile, name);
        appendNumber(profile, offset);
        appendNumber(profile, data.size());
        offset += padded(data.size());
    }
    for (const auto& [name, data] : tags) {
        profile.insert(profile.end(), data.begin(), data.end());
        profile.resize(padded(profile.size()));
    }
    Bytes size;
    appendNumber(size, profile.size() + 4);
    profile.insert(profile.begin(), size.begin(), size.end());
    return profile;
}

}  // namespace desktop
