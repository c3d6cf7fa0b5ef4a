#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace desktop {

/// What is made, moved or written below some directories from the construction on, by whomever,
/// by inotify. Directories that are made later are watched too.
///
/// Not seen: what is made and gone again in a directory that is a moment old, which has no watch
/// yet (what stays there is); files without a name, which can only be found while they are open.
/// Safe to be asked on any thread.
class DiskWatch {
  public:
    using Paths = std::set<std::filesystem::path>;

    /// Roots that are missing count as empty. Throws std::runtime_error when the system has no
    /// watch left.
    explicit DiskWatch(const std::vector<std::filesystem::path>& roots);
    ~DiskWatch();
    DiskWatch(const DiskWatch&) = delete;
    DiskWatch& operator=(const DiskWatch&) = delete;

    /// Every path so far, also of what has gone again. Throws std::runtime_error when more happened
    /// at once than the system keeps account of.
    [[nodiscard]] Paths touched();

  private:
    enum class Found { before, since };

    void watchTree(const std::filesystem::path& directory, Found found);
    void readEvents();
    void follow();

    std::vector<std::filesystem::path> roots_;
    int events_;
    int end_;
    std::mutex mutex_;
    std::map<int, std::filesystem::path> directories_;
    Paths before_;
    Paths touched_;
    bool isOverflown_ = false;
    std::thread thread_;
};

}  // namespace desktop
