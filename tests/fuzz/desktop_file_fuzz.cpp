// Any bytes as a locale, in the first line, and a `.desktop` file; and a path that is written into
// one.

#include <algorithm>

#include "base/text.h"
#include "fuzz_input.h"
#include "platform/freedesktop/desktop_entry.h"
#include "platform/freedesktop/exec_line.h"
#include "platform/freedesktop/key_file.h"

namespace {

bool isOneLine(const std::string& text) {
    return std::ranges::none_of(text, base::isControl);
}

void checkPath(const std::string& path) {
    using namespace platform::freedesktop;
    fuzz::require(unescapedString(escapedString(path)) == path, "an escaped string comes back");
    // A doubled percent sign needs a detour through a helper, which is the program then.
    if (path.find('%') == std::string::npos && !path.empty()) {
        fuzz::require(programOfExecLine(execLineFor(path)) == path, "a path comes back");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::string locale = input.line();
    const auto keys = platform::freedesktop::nameKeysOf(locale);
    fuzz::require(!keys.empty() && keys.back() == "Name", "the plain name comes last");
    checkPath(locale);
    const auto file = platform::freedesktop::KeyFile::parse(input.text());
    for (const std::string& part : file.list("Desktop Entry", "Categories")) {
        fuzz::require(!part.empty() && part.find_first_of(",;\n") == std::string::npos,
                      "a list has no empty and no double parts");
    }
    const auto entry = platform::freedesktop::parseDesktopEntry(input.text(), keys);
    if (entry && entry->visibility == platform::freedesktop::DesktopEntry::Visibility::present) {
        fuzz::require(!entry->name.empty(), "an application has a name");
        fuzz::require(isOneLine(entry->name) && isOneLine(entry->startupWindowClass),
                      "names are one line");
        fuzz::require(entry->executable.find('/') == std::string::npos,
                      "a program has no directories");
    }
    platform::freedesktop::programOfExecLine(input.text());
    return 0;
}
