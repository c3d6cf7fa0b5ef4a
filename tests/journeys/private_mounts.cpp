#include "journeys/private_mounts.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace journeys {

namespace {

bool leaveMounts() {
    return ::unshare(CLONE_NEWNS) == 0 &&
           ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

}  // namespace

bool canMount() {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(::unshare(CLONE_NEWNS) == 0 ? 0 : 1);
    }
    int status = 1;
    ::waitpid(child, &status, 0);
    return status == 0;
}

std::function<void()> mountedOver(const std::filesystem::path& target, unsigned long flags,
                                  const char* options) {
    return [target, flags, options] {
        if (!leaveMounts() || ::mount("tmpfs", target.c_str(), "tmpfs", flags, options) != 0) {
            ::_exit(125);
        }
    };
}

std::function<void()> mountedFile(const std::filesystem::path& file,
                                  const std::filesystem::path& target) {
    return [file, target] {
        if (!leaveMounts() ||
            ::mount(file.c_str(), target.c_str(), nullptr, MS_BIND, nullptr) != 0) {
            ::_exit(125);
        }
    };
}

}  // namespace journeys
