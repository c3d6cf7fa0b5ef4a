#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "latency/watch.h"

namespace latency {

/// Sees files of one folder being closed by who wrote them, or renamed into place.
class FileWatch final : public Watch {
  public:
    explicit FileWatch(const std::filesystem::path& folder);
    ~FileWatch() override;
    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;

    [[nodiscard]] int descriptor() const override { return descriptor_; }
    void drain() override;

    /// Forgets what it has seen.
    void restart();
    /// When a file was last complete.
    [[nodiscard]] std::optional<double> closedAt() const { return closedAt_; }
    /// Its size, 0 when there is none.
    [[nodiscard]] std::uintmax_t size() const;
    /// Removes the files of the folder.
    void clean();

  private:
    std::filesystem::path folder_;
    int descriptor_;
    std::optional<double> closedAt_;
    std::string name_;
};

}  // namespace latency
