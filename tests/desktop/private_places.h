#pragma once

#include <filesystem>
#include <functional>
#include <vector>

namespace desktop {

/// Places of its own, below a directory, for a program that is watched: a working directory, and
/// what it sees as /tmp, /var/tmp and /dev/shm. The last three are mounts that only the program
/// and its children have; nothing else on the machine gets in between.
///
/// They take the right to mount, or a system that lets a person have name spaces. Without, and for
/// a place that the build lies in, the program sees those three as they are.
class PrivatePlaces {
  public:
    /// Makes the places below `directory`, which has to stay.
    explicit PrivatePlaces(const std::filesystem::path& directory);

    /// Where what the program makes in its places is found from outside.
    [[nodiscard]] std::vector<std::filesystem::path> directories() const;
    /// Whether the program sees a place of its own as /tmp.
    [[nodiscard]] bool hasTemporaryDirectory() const { return !mounts_.empty(); }
    /// Takes a new process, between fork and exec, into the places. The value may outlive this.
    [[nodiscard]] std::function<void()> entrance() const;

  private:
    struct Mount {
        std::filesystem::path source;
        std::filesystem::path target;
    };

    void replace(const std::filesystem::path& place, const char* name);
    [[nodiscard]] bool canEnter() const;

    std::filesystem::path directory_;
    std::vector<Mount> mounts_;
};

}  // namespace desktop
