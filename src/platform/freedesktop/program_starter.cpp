#include "platform/freedesktop/program_starter.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/freedesktop/file_handle.h"

namespace platform::freedesktop {

namespace {

/// This program's environment without what it has set for itself.
std::vector<char*> environmentForOthers() {
    std::vector<char*> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (!std::string_view(*variable).starts_with("QT_QPA_PLATFORM=")) {
            variables.push_back(*variable);
        }
    }
    variables.push_back(nullptr);
    return variables;
}

/// A session of its own, nothing on the standard streams, every signal as usual.
class SpawnPlan {
  public:
    SpawnPlan() {
        ::posix_spawn_file_actions_init(&actions_);
        ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
        ::posix_spawnattr_init(&attributes_);
        sigset_t signals;
        sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes_, &signals);
        sigaddset(&signals, SIGPIPE);
        ::posix_spawnattr_setsigdefault(&attributes_, &signals);
        ::posix_spawnattr_setflags(
            &attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    }
    ~SpawnPlan() {
        ::posix_spawn_file_actions_destroy(&actions_);
        ::posix_spawnattr_destroy(&attributes_);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    std::optional<pid_t> spawn(ProgramCommand command) const {
        std::vector<char*> arguments;
        for (std::string& argument : command) {
            arguments.push_back(argument.data());
        }
        arguments.push_back(nullptr);
        pid_t pid = -1;
        const int error = ::posix_spawnp(&pid, arguments.front(), &actions_, &attributes_,
                                         arguments.data(), environmentForOthers().data());
        return error == 0 ? std::optional(pid) : std::nullopt;
    }

  private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

}  // namespace

struct ProgramStarter::Child {
    pid_t pid;
    /// Becomes readable when the child ends.
    FileHandle end;
    std::chrono::steady_clock::time_point startedAt;
    std::vector<ProgramCommand> others;
    std::function<void()> onNone;
    std::shared_ptr<void> watch = nullptr;
};

ProgramStarter::ProgramStarter(WatchFileDescriptor watch) : watch_(std::move(watch)) {}
ProgramStarter::~ProgramStarter() = default;

void ProgramStarter::startFirst(std::vector<ProgramCommand> commands,
                                std::function<void()> onNone) {
    const SpawnPlan plan;
    while (!commands.empty()) {
        const auto pid = plan.spawn(commands.front());
        commands.erase(commands.begin());
        if (!pid) {
            continue;
        }
        children_.push_front(
            {.pid = *pid,
             .end = FileHandle(static_cast<int>(::syscall(SYS_pidfd_open, *pid, 0))),
             .startedAt = std::chrono::steady_clock::now(),
             .others = std::move(commands),
             .onNone = std::move(onNone)});
        const auto child = children_.begin();
        if (child->end.isOpen()) {
            child->watch = watch_(child->end.get(), [this, child] { noteEnd(child); });
        }
        return;
    }
    onNone();
}

void ProgramStarter::noteEnd(std::list<Child>::iterator child) {
    int status = 0;
    if (::waitpid(child->pid, &status, WNOHANG) == 0) {
        return;
    }
    const bool isEarly = std::chrono::steady_clock::now() - child->startedAt < failureLimit;
    const bool hasFailed = !WIFEXITED(status) || WEXITSTATUS(status) != 0;
    // Out of the list first: what comes next may start another one.
    std::list<Child> ended;
    ended.splice(ended.begin(), children_, child);
    if (hasFailed && isEarly) {
        startFirst(std::move(ended.front().others), std::move(ended.front().onNone));
    }
}

}  // namespace platform::freedesktop
