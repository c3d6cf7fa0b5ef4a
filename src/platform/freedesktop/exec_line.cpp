#include "platform/freedesktop/exec_line.h"

#include <optional>
#include <utility>

namespace platform::freedesktop {

namespace {

// What only a quoted argument may hold, and of that what has to be escaped inside the quotes.
constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
constexpr std::string_view escapedInQuotes = "\"`$\\";

constexpr std::pair<char, char> stringEscapes[] = {
    {'\n', 'n'}, {'\t', 't'}, {'\r', 'r'}, {'\\', '\\'}};

std::optional<char> letterFor(char byte) {
    for (const auto& [meant, letter] : stringEscapes) {
        if (byte == meant) {
            return letter;
        }
    }
    return std::nullopt;
}

/// The quoted argument at the start of `command`, without its quotes; empty when they do not close.
std::string quotedArgument(std::string_view command) {
    std::string argument;
    for (std::size_t index = 1; index < command.size(); ++index) {
        if (command[index] == '"') {
            return argument;
        }
        if (command[index] == '\\' && index + 1 < command.size() &&
            escapedInQuotes.find(command[index + 1]) != std::string_view::npos) {
            ++index;
        }
        argument.push_back(command[index]);
    }
    return {};
}

std::string withoutDoubledPercents(std::string_view argument) {
    std::string text;
    for (std::size_t index = 0; index < argument.size(); ++index) {
        text.push_back(argument[index]);
        if (argument.substr(index, 2) == "%%") {
            ++index;
        }
    }
    return text;
}

}  // namespace

std::string escapedString(std::string_view text) {
    std::string value;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (const auto letter = letterFor(text[index])) {
            value += {'\\', *letter};
        } else if (text[index] == ' ' && (index == 0 || index + 1 == text.size())) {
            value += "\\s";
        } else {
            value.push_back(text[index]);
        }
    }
    return value;
}

std::string unescapedString(std::string_view value) {
    std::string text;
    for (std::size_t index = 0; index < value.size(); ++index) {
        char byte = value[index];
        if (byte == '\\' && index + 1 < value.size()) {
            ++index;
            byte = value[index] == 's' ? ' ' : value[index];
            for (const auto& [meant, letter] : stringEscapes) {
                byte = value[index] == letter ? meant : byte;
            }
        }
        text.push_back(byte);
    }
    return text;
}

std::string execLineFor(std::string_view path) {
    const bool isQuoted = path.find_first_of(reserved) != std::string_view::npos;
    std::string argument;
    for (const char byte : path) {
        if (isQuoted && escapedInQuotes.find(byte) != std::string_view::npos) {
            argument.push_back('\\');
        } else if (byte == '%') {
            argument.push_back('%');
        }
        argument.push_back(byte);
    }
    // The reader of GNOME's family looks for a program before it takes a doubled percent sign for
    // one; what follows the program it reads as everybody does. A path with an equals sign would be
    // a variable for `env`.
    const bool needsDetour =
        path.find('%') != std::string_view::npos && path.find('=') == std::string_view::npos;
    return (needsDetour ? "env " : "") + escapedString(isQuoted ? '"' + argument + '"' : argument);
}

std::string programOfExecLine(std::string_view value) {
    const std::string command = unescapedString(value);
    return withoutDoubledPercents(command.starts_with('"')
                                      ? quotedArgument(command)
                                      : command.substr(0, command.find_first_of(" \t\n")));
}

}  // namespace platform::freedesktop
