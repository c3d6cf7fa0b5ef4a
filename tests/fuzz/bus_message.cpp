#include "bus_message.h"

#include <array>
#include <cstring>

namespace fuzz {

namespace {

enum Field : std::uint8_t {
    path = 1,
    interface = 2,
    member = 3,
    errorName = 4,
    replySerial = 5,
    sender = 7,
    signature = 8,
};
constexpr std::uint8_t noReply = 1;
constexpr std::size_t fixedHeader = 16;
constexpr int deepest = 5;

/// Texts that some receiver means something by.
constexpr std::array<const char*, 24> knownTexts{
    "",
    "screenshot",
    "recognize-text",
    "Screenshot",
    "clicked",
    "hovered",
    "opened",
    "label",
    "type",
    "enabled",
    "children-display",
    "vertical",
    "org.freedesktop.appearance",
    "color-scheme",
    "org.kde.StatusNotifierItem",
    "com.canonical.dbusmenu",
    "org.kde.StatusNotifierWatcher",
    "org.freedesktop.Notifications",
    "body-markup",
    "sound",
    "desktop-startup-id",
    "activation-token",
    "IconPixmap",
    "IsStatusNotifierHostRegistered",
};

std::size_t alignmentOf(char type) {
    switch (type) {
        case 'y':
        case 'g':
        case 'v':
            return 1;
        case 'n':
        case 'q':
            return 2;
        case 'x':
        case 't':
        case 'd':
        case '(':
        case '{':
            return 8;
        default:
            return 4;
    }
}

/// How long the first whole type of a signature is.
std::size_t lengthOfFirst(std::string_view signature) {
    if (signature.front() == 'a') {
        return 1 + lengthOfFirst(signature.substr(1));
    }
    int open = 0;
    for (std::size_t at = 0; at < signature.size(); ++at) {
        open += signature[at] == '(' || signature[at] == '{' ? 1 : 0;
        open -= signature[at] == ')' || signature[at] == '}' ? 1 : 0;
        if (open == 0) {
            return at + 1;
        }
    }
    return signature.size();
}

std::string madeUpType(Input& input, int depth) {
    constexpr std::string_view basic = "ybnqiuxtdsog";
    const std::uint8_t kind = input.byte() % 20;
    if (kind < basic.size() || depth >= deepest) {
        return {basic[kind % basic.size()]};
    }
    switch (kind) {
        case 12:
        case 13:
            return "v";
        case 14:
            return "a" + madeUpType(input, depth + 1);
        case 15:
            return std::string("a{") + basic[input.byte() % basic.size()] +
                   madeUpType(input, depth + 1) + "}";
        case 16:
            return "a{sv}";
        case 17:
            return "as";
        default: {
            std::string members = madeUpType(input, depth + 1);
            for (int more = input.byte() % 3; more > 0; --more) {
                members += madeUpType(input, depth + 1);
            }
            return "(" + members + ")";
        }
    }
}

std::string madeUpPath(Input& input) {
    constexpr std::array<const char*, 4> paths{"/", "/StatusNotifierItem", "/MenuBar",
                                               "/app/lumaframe/Lumaframe"};
    return paths[input.byte() % paths.size()];
}

/// Small numbers mean something, the largest ones overflow.
std::uint64_t madeUpNumber(Input& input) {
    const std::uint8_t first = input.byte();
    if (first < 200) {
        return first % 8;
    }
    return first < 230 ? ~static_cast<std::uint64_t>(first % 4) : input.number();
}

void addField(BodyWriter& header, Field field, std::string_view text, std::string_view type) {
    if (!text.empty()) {
        header.align(8);
        header.number(field, 1);
        header.signature(type);
        if (type == "g") {
            header.signature(text);
        } else {
            header.text(text);
        }
    }
}

void readField(BodyReader& header, Message& message) {
    header.align(8);
    const auto field = header.number(1);
    const std::string type = header.signature();
    const std::string text = type == "g"   ? header.signature()
                             : type == "u" ? std::string()
                                           : header.text();
    switch (field) {
        case path:
            message.path = text;
            break;
        case interface:
            message.interface = text;
            break;
        case member:
            message.member = text;
            break;
        case errorName:
            message.errorName = text;
            break;
        case replySerial:
            message.replySerial = static_cast<std::uint32_t>(header.number(4));
            break;
        case signature:
            message.signature = text;
            break;
        default:
            require(type != "u", "no descriptor is sent");
            break;
    }
}

}  // namespace

void BodyWriter::number(std::uint64_t value, std::size_t size) {
    align(size);
    for (std::size_t index = 0; index < size; ++index) {
        bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * index)));
    }
}

void BodyWriter::text(std::string_view text) {
    number(text.size(), 4);
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    bytes_.push_back(0);
}

void BodyWriter::signature(std::string_view signature) {
    number(signature.size(), 1);
    bytes_.insert(bytes_.end(), signature.begin(), signature.end());
    bytes_.push_back(0);
}

void BodyWriter::array(std::string_view element, Input& input, int depth) {
    align(4);
    const std::size_t length = bytes_.size();
    number(0, 4);
    align(alignmentOf(element.front()));
    const std::size_t begin = bytes_.size();
    for (int count = input.byte() % 4; count > 0; --count) {
        madeUp(element, input, depth + 1);
    }
    const auto size = static_cast<std::uint32_t>(bytes_.size() - begin);
    std::memcpy(bytes_.data() + length, &size, sizeof size);
}

void BodyWriter::madeUp(std::string_view signature, Input& input, int depth) {
    while (!signature.empty()) {
        const std::size_t length = lengthOfFirst(signature);
        const std::string_view type = signature.substr(0, length);
        signature.remove_prefix(length);
        switch (type.front()) {
            case 's':
                text(madeUpText(input));
                break;
            case 'o':
                text(madeUpPath(input));
                break;
            case 'g':
                this->signature(madeUpSignature(input));
                break;
            case 'v': {
                const std::string inner = madeUpType(input, depth);
                this->signature(inner);
                madeUp(inner, input, depth + 1);
                break;
            }
            case 'a':
                array(type.substr(1), input, depth);
                break;
            case '(':
            case '{':
                align(8);
                madeUp(type.substr(1, type.size() - 2), input, depth + 1);
                break;
            case 'b':
                number(input.byte() % 2, 4);
                break;
            default:
                number(madeUpNumber(input), type.front() == 'y' ? 1 : alignmentOf(type.front()));
                break;
        }
    }
}

std::uint64_t BodyReader::number(std::size_t size) {
    align(size);
    const std::string digits = bytes(size);
    std::uint64_t value = 0;
    std::memcpy(&value, digits.data(), size);
    return value;
}

std::string BodyReader::text() {
    const auto size = number(4);
    std::string text = bytes(size);
    bytes(1);
    return text;
}

std::string BodyReader::signature() {
    const auto size = number(1);
    std::string text = bytes(size);
    bytes(1);
    return text;
}

std::string BodyReader::bytes(std::size_t size) {
    require(at_ + size <= bytes_.size(), "what the program sends is a message");
    const auto begin = bytes_.begin() + static_cast<std::ptrdiff_t>(at_);
    at_ += size;
    return {begin, begin + static_cast<std::ptrdiff_t>(size)};
}

std::string madeUpSignature(Input& input) {
    std::string signature;
    for (int values = input.byte() % 5; values > 0; --values) {
        signature += madeUpType(input, 0);
    }
    // As long as one may be.
    return signature.size() <= 255 ? signature : "s";
}

std::string madeUpText(Input& input) {
    const std::uint8_t choice = input.byte();
    if (choice < 192) {
        return knownTexts[choice % knownTexts.size()];
    }
    std::string text;
    for (int letters = choice - 192; letters > 0; --letters) {
        const std::uint8_t letter = input.byte();
        if (letter >= 0x80) {
            text += static_cast<char>(0xc2 + letter % 16);
            text += static_cast<char>(0x80 + letter % 64);
        } else if (letter > 0) {
            text += static_cast<char>(letter);
        }
    }
    return text;
}

std::vector<std::uint8_t> bytesOf(const Message& message) {
    BodyWriter fields;
    // The array begins at a multiple of eight, so that it can be written for itself.
    addField(fields, path, message.path, "o");
    addField(fields, interface, message.interface, "s");
    addField(fields, member, message.member, "s");
    addField(fields, errorName, message.errorName, "s");
    if (message.replySerial != 0) {
        fields.align(8);
        fields.number(replySerial, 1);
        fields.signature("u");
        fields.number(message.replySerial, 4);
    }
    addField(fields, sender, message.sender, "s");
    addField(fields, signature, message.signature, "g");
    const auto header = fields.take();

    BodyWriter whole;
    whole.number('l', 1);
    whole.number(static_cast<std::uint8_t>(message.type), 1);
    whole.number(message.wantsReply ? 0 : noReply, 1);
    whole.number(1, 1);
    whole.number(message.body.size(), 4);
    whole.number(message.serial, 4);
    whole.number(header.size(), 4);
    auto bytes = whole.take();
    bytes.insert(bytes.end(), header.begin(), header.end());
    bytes.resize((bytes.size() + 7) / 8 * 8);
    bytes.insert(bytes.end(), message.body.begin(), message.body.end());
    return bytes;
}

std::optional<Message> takeMessage(std::vector<std::uint8_t>& bytes) {
    if (bytes.size() < fixedHeader) {
        return std::nullopt;
    }
    std::array<std::uint32_t, 4> numbers{};
    std::memcpy(numbers.data(), bytes.data(), sizeof numbers);
    const std::size_t headerSize = (fixedHeader + numbers[3] + 7) / 8 * 8;
    const std::size_t size = headerSize + numbers[1];
    if (bytes.size() < size) {
        return std::nullopt;
    }
    Message message;
    message.type = static_cast<MessageType>(bytes[1]);
    message.wantsReply = (bytes[2] & noReply) == 0;
    message.serial = numbers[2];
    const auto begin = bytes.begin();
    const auto bodyBegin = begin + static_cast<std::ptrdiff_t>(headerSize);
    const auto end = begin + static_cast<std::ptrdiff_t>(size);
    BodyReader header({begin + fixedHeader, bodyBegin});
    while (header.place() < numbers[3]) {
        readField(header, message);
    }
    message.body.assign(bodyBegin, end);
    bytes.erase(begin, end);
    return message;
}

}  // namespace fuzz
