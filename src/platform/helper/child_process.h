#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/helper/owned_descriptor.h"

namespace platform::helper {

/// The number of the first descriptor that a child is given.
inline constexpr int firstDescriptor = 3;
/// What the dynamic linker ends a child with when a library is missing.
inline constexpr int missingLibraryStatus = 127;

struct ChildCommand {
    /// The program, absolute.
    std::string path;
    std::vector<std::string> arguments{};
    /// As "name=value"; the whole of it.
    std::vector<std::string> environment{};
    /// What it keeps of this process, under the numbers from `firstDescriptor` on; nothing else.
    std::vector<int> descriptors{};
};

/// A helper program as a child of this process, from its start until it is killed and reaped. Its
/// standard streams lead nowhere. One thread.
class ChildProcess {
  public:
    /// Returns without waiting for it.
    static base::Result<std::unique_ptr<ChildProcess>> start(const ChildCommand& command);
    /// Kills the helper, which has nothing to lose, and reaps it.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Its wait status, as far as it is known, the first time. Waiting is short: the process dies
    /// of the signal, and nothing that it may do can hold it up.
    std::optional<int> killAndReap();
    /// Readable when the process has ended; negative where the kernel has no such thing.
    [[nodiscard]] int endDescriptor() const { return endDescriptor_.number(); }
    /// 0 when it was reaped.
    [[nodiscard]] int pid() const { return pid_; }

  private:
    explicit ChildProcess(int pid);

    int pid_;
    OwnedDescriptor endDescriptor_;
};

/// What every helper may know of this program's environment: it reads no settings, and talks to no
/// display or bus.
std::vector<std::string> plainEnvironment();

/// Whether a wait status says that the program lacks a library.
bool saysMissingLibrary(const std::optional<int>& status);

}  // namespace platform::helper
