// Any bytes as the profile that a program put on the root window.

#include <algorithm>

#include "fuzz_input.h"
#include "platform/x11/icc_profile.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> bytes(data, data + size);
    const auto profile = platform::x11::checkedIccProfile(bytes);
    if (!profile) {
        return 0;
    }
    fuzz::require(profile->size() <= size && std::equal(profile->begin(), profile->end(), data),
                  "a profile is the beginning of the bytes");
    fuzz::require(platform::x11::checkedIccProfile(*profile) == profile,
                  "what was checked passes again");
    const std::string name = platform::x11::iccDescription(*profile);
    fuzz::require(name.find('\0') == std::string::npos, "a name ends at its zero byte");
    return 0;
}
