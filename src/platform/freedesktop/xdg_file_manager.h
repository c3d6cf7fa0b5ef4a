#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_manager.h"
#include "platform/freedesktop/xdg_directories.h"

namespace platform::freedesktop {

/// The user's files on a system with XDG directories. Main thread.
class XdgFileManager final : public base::FileManager {
  public:
    explicit XdgFileManager(XdgDirectories directories);

    [[nodiscard]] std::vector<std::string> downloadsDirectories() const override;
    [[nodiscard]] bool isReadableFolder(const std::string& path) const override;
    base::Status write(const std::string& path, std::span<const std::uint8_t> bytes) override;
    base::Status writeTextAtomically(const std::string& path, std::string_view text) override;

  private:
    XdgDirectories directories_;
};

}  // namespace platform::freedesktop
