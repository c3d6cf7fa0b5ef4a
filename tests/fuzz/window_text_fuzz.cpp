// Any bytes as the title or the class of a window.

#include "fuzz_input.h"
#include "platform/x11/window_property.h"
#include "utf8_rules.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = platform::x11::printableText(fuzz::Input(data, size).text());
    fuzz::require(text.size() <= 256, "a text has 256 bytes at most");
    fuzz::require(fuzz::isUtf8(text), "a text is UTF-8");
    fuzz::require(!fuzz::hasControl(text), "a text is one line");
    return 0;
}
