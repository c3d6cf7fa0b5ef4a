#pragma once

#include "base/file_manager.h"

namespace platform::macos {

/// The user's files by the default file manager.
class FoundationFileManager final : public base::FileManager {
  public:
    // Main thread, as every method here.
    [[nodiscard]] std::vector<std::string> downloadsDirectories() const override;
    [[nodiscard]] bool isReadableFolder(const std::string& path) const override;
    base::Status write(const std::string& path, std::span<const std::uint8_t> bytes) override;
    base::Status writeTextAtomically(const std::string& path, std::string_view text) override;
};

}  // namespace platform::macos
