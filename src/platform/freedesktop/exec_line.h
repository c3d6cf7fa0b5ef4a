#pragma once

#include <string>
#include <string_view>

namespace platform::freedesktop {

/// The value of the key Exec, as it is written into a `.desktop` file, that starts the program at
/// `path` without arguments, whatever characters its path has.
///
/// Source of the rules: Desktop Entry Specification 1.5, "The Exec key", and below it the escapes
/// of a string.
std::string execLineFor(std::string_view path);

/// A value of type string as it is written: with \s, \n, \t, \r and \\ for what would not survive.
std::string escapedString(std::string_view text);
/// The text that such a value stands for.
std::string unescapedString(std::string_view value);

/// The program that an Exec value, as it is written in the file, starts: a path or a name; empty
/// when the value is none.
std::string programOfExecLine(std::string_view value);

}  // namespace platform::freedesktop
