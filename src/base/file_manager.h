#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace base {

/// The user's files. Main thread; paths are UTF-8 as the system gives them.
class FileManager {
  public:
    virtual ~FileManager() = default;
    /// The user's Downloads directories, best first; empty when the user has none. None is created.
    [[nodiscard]] virtual std::vector<std::string> downloadsDirectories() const = 0;
    /// Whether there is a folder at `path` (or behind a link there) whose entries can be listed.
    [[nodiscard]] virtual bool isReadableFolder(const std::string& path) const = 0;
    /// Writes straight into `path` and replaces what is there. Fails, and never blocks, on a FIFO
    /// that nobody reads. The error is one sentence for the user.
    virtual Status write(const std::string& path, std::span<const std::uint8_t> bytes) = 0;
    /// Writes aside and moves into place: a reader sees the old text or the new, never a part.
    virtual Status writeTextAtomically(const std::string& path, std::string_view text) = 0;
};

}  // namespace base
