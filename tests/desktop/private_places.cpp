#include "desktop/private_places.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>

namespace desktop {
namespace {

namespace fs = std::filesystem;

bool isBelow(const fs::path& path, const fs::path& directory) {
    const std::string name = path.string();
    return name.starts_with(directory.string() + "/");
}

bool write(const char* file, const std::string& text) {
    const int descriptor = ::open(file, O_WRONLY | O_CLOEXEC);
    const bool isWritten =
        ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::close(descriptor);
    return isWritten;
}

/// How a person without rights stays who they are in a name space of their own.
struct Identity {
    std::string user = std::to_string(::getuid()) + " " + std::to_string(::getuid()) + " 1";
    std::string group = std::to_string(::getgid()) + " " + std::to_string(::getgid()) + " 1";
};

bool enterNameSpace(const Identity& identity) {
    if (::unshare(CLONE_NEWNS) == 0) {
        return true;
    }
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && write("/proc/self/setgroups", "deny") &&
           write("/proc/self/uid_map", identity.user) &&
           write("/proc/self/gid_map", identity.group);
}

}  // namespace

PrivatePlaces::PrivatePlaces(const fs::path& directory) : directory_(directory) {
    fs::create_directory(directory_ / "working");
    replace("/tmp", "tmp");
    replace("/var/tmp", "var-tmp");
    replace("/dev/shm", "shm");
    if (!canEnter()) {
        mounts_.clear();
    }
}

std::vector<fs::path> PrivatePlaces::directories() const {
    return {directory_ / "working", directory_ / "tmp", directory_ / "var-tmp", directory_ / "shm"};
}

void PrivatePlaces::replace(const fs::path& place, const char* name) {
    const fs::path replacement = directory_ / name;
    fs::create_directory(replacement);
    fs::permissions(replacement, fs::perms::all | fs::perms::sticky_bit);
    if (isBelow(LUMAFRAME_TEST_BUS_PROGRAM, place)) {
        return;
    }
    // What the program has to find there all the same: this desktop, and the X server.
    for (const fs::path& kept : {directory_, fs::path("/tmp/.X11-unix")}) {
        if (isBelow(kept, place)) {
            const fs::path target = replacement / fs::relative(kept, place);
            fs::create_directories(target);
            mounts_.push_back({kept, target});
        }
    }
    mounts_.push_back({replacement, place});
}

std::function<void()> PrivatePlaces::entrance() const {
    return [mounts = mounts_, working = directory_ / "working", identity = Identity()] {
        bool hasEntered = ::chdir(working.c_str()) == 0;
        if (!mounts.empty()) {
            hasEntered = hasEntered && enterNameSpace(identity) &&
                         ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        }
        for (const Mount& mount : mounts) {
            hasEntered = hasEntered && ::mount(mount.source.c_str(), mount.target.c_str(), nullptr,
                                               MS_BIND | MS_REC, nullptr) == 0;
        }
        // By its path, or it would be outside of the mounts.
        if (!hasEntered || ::chdir(working.c_str()) != 0) {
            ::_exit(125);
        }
        // A new name space may forget it.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    };
}

bool PrivatePlaces::canEnter() const {
    const auto enter = entrance();
    const pid_t child = ::fork();
    if (child == 0) {
        enter();
        ::_exit(0);
    }
    int status = 1;
    ::waitpid(child, &status, 0);
    return status == 0;
}

}  // namespace desktop
