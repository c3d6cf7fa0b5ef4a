#include "platform/helper/file_confinement.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "platform/helper/owned_descriptor.h"

namespace platform::helper {

namespace {

/// The kernel's interface, as of its seventh version, written out because the headers of the C
/// library are older than the kernels that they are used with.
struct Ruleset {
    std::uint64_t handledFileAccess = 0;
    std::uint64_t handledNetworkAccess = 0;
    std::uint64_t scoped = 0;
};
struct [[gnu::packed]] PathRule {
    std::uint64_t allowedAccess = 0;
    std::int32_t parent = -1;
};
constexpr unsigned long askForVersion = 1;
constexpr int pathRuleType = 1;
constexpr std::uint64_t readFile = 1U << 2U;
constexpr std::uint64_t readDirectory = 1U << 3U;

/// All rights over files that a version of the interface knows: executing, writing, reading, making
/// and removing; then moving between directories (2), truncating (3), device controls (5).
std::uint64_t fileRightsOf(long version) {
    const unsigned count = version >= 5 ? 16 : version >= 3 ? 15 : version >= 2 ? 14 : 13;
    return (std::uint64_t{1} << count) - 1;
}

/// Beyond files: binding and connecting of TCP sockets (4), abstract sockets and signals of other
/// processes (6).
Ruleset rulesetOf(long version) {
    return {.handledFileAccess = fileRightsOf(version),
            .handledNetworkAccess = version >= 4 ? 3U : 0U,
            .scoped = version >= 6 ? 3U : 0U};
}

std::size_t lengthKnownTo(long version) {
    return version >= 6   ? sizeof(Ruleset)
           : version >= 4 ? offsetof(Ruleset, scoped)
                          : offsetof(Ruleset, handledNetworkAccess);
}

base::Error failure() {
    return {base::ErrorKind::failed,
            std::string("The helper program could not give up its access to files: ") +
                std::strerror(errno) + "."};
}

}  // namespace

base::Result<FileConfinement> confineFiles() {
    const long version =
        ::syscall(SYS_landlock_create_ruleset, nullptr, std::size_t{0}, askForVersion);
    if (version < 1) {
        return FileConfinement::missing;
    }
    const Ruleset ruleset = rulesetOf(version);
    const OwnedDescriptor rules(static_cast<int>(
        ::syscall(SYS_landlock_create_ruleset, &ruleset, lengthKnownTo(version), 0UL)));
    const OwnedDescriptor root(::open("/", O_PATH | O_CLOEXEC));
    if (!rules.isOpen() || !root.isOpen()) {
        return failure();
    }
    const PathRule rule{.allowedAccess = readFile | readDirectory, .parent = root.number()};
    if (::syscall(SYS_landlock_add_rule, rules.number(), pathRuleType, &rule, 0UL) != 0 ||
        ::syscall(SYS_landlock_restrict_self, rules.number(), 0UL) != 0) {
        return failure();
    }
    return FileConfinement::active;
}

}  // namespace platform::helper
