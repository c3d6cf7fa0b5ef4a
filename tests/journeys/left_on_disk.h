#pragma once

#include <optional>
#include <set>
#include <string>

#include "desktop/desktop.h"
#include "desktop/disk_watch.h"
#include "desktop/private_places.h"

namespace journeys {

/// Whether a program was ended in the middle of what it did.
enum class Ending { ordinary, killed };

/// What a program of a desktop leaves on the disk, and what it has there for a moment, compared
/// with what docs/security.md says. It is watched in its home, its run-time directory, its working
/// directory, and what it sees as /tmp, /var/tmp and /dev/shm; where the latter cannot be its own
/// (see desktop::PrivatePlaces) in $TMPDIR instead.
///
/// Everything that happens there while a program runs counts as done by it, so a test that makes
/// files of its own then has to say so.
class LeftOnDisk {
  public:
    explicit LeftOnDisk(const desktop::Desktop& desktop);

    // How to start the program.
    [[nodiscard]] desktop::Environment environment() const;
    [[nodiscard]] std::function<void()> entrance() const { return places_.entrance(); }
    /// Just before a start, also before another one.
    void begin();

    /// Takes over what the test makes: `path` alone, not what is below it.
    void expect(const std::filesystem::path& path) { expected_.insert(path); }

    /// After the end of the program: every path that should never have been or should have gone.
    [[nodiscard]] std::set<std::string> strangers(Ending ending);

  private:
    const desktop::Desktop& desktop_;
    desktop::PrivatePlaces places_;
    std::optional<desktop::DiskWatch> watch_;
    desktop::DiskWatch::Paths expected_;
    desktop::DiskWatch::Paths touched_;
};

}  // namespace journeys
