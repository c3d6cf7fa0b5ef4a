#include "platform/helper/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include "platform/environment.h"

namespace platform::helper {

namespace {

/// What the child does between its birth and the program: no descriptor but those it is given, no
/// signal blocked or ignored, no directory kept busy.
class SpawnPlan {
  public:
    explicit SpawnPlan(const std::vector<OwnedDescriptor>& descriptors) {
        ::posix_spawn_file_actions_init(&actions_);
        int number = firstDescriptor;
        for (const OwnedDescriptor& descriptor : descriptors) {
            ::posix_spawn_file_actions_adddup2(&actions_, descriptor.number(), number++);
        }
        ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addclosefrom_np(&actions_, number);
        ::posix_spawn_file_actions_addchdir_np(&actions_, "/");
        ::posix_spawnattr_init(&attributes_);
        sigset_t signals;
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes_, &signals);
        ::sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&attributes_, &signals);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnPlan() {
        ::posix_spawnattr_destroy(&attributes_);
        ::posix_spawn_file_actions_destroy(&actions_);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    /// Gives the error number, 0 for success.
    int spawn(pid_t& pid, const ChildCommand& command) const {
        std::vector<std::string> arguments{command.path};
        arguments.insert(arguments.end(), command.arguments.begin(), command.arguments.end());
        std::vector<std::string> environment = command.environment;
        return ::posix_spawn(&pid, command.path.c_str(), &actions_, &attributes_,
                             pointersTo(arguments).data(), pointersTo(environment).data());
    }

  private:
    static std::vector<char*> pointersTo(std::vector<std::string>& texts) {
        std::vector<char*> pointers;
        pointers.reserve(texts.size() + 1);
        for (std::string& text : texts) {
            pointers.push_back(text.data());
        }
        pointers.push_back(nullptr);
        return pointers;
    }

    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

/// Out of the way of the numbers that the child gets, so that none is overwritten by another.
std::vector<OwnedDescriptor> outOfTheWay(const std::vector<int>& descriptors) {
    const int beyond = firstDescriptor + static_cast<int>(descriptors.size());
    std::vector<OwnedDescriptor> copies;
    copies.reserve(descriptors.size());
    for (const int descriptor : descriptors) {
        copies.emplace_back(::fcntl(descriptor, F_DUPFD_CLOEXEC, beyond));
    }
    return copies;
}

}  // namespace

base::Result<std::unique_ptr<ChildProcess>> ChildProcess::start(const ChildCommand& command) {
    const auto descriptors = outOfTheWay(command.descriptors);
    pid_t pid = -1;
    const int error = SpawnPlan(descriptors).spawn(pid, command);
    if (error != 0) {
        return base::Error{base::ErrorKind::unavailable,
                           "The helper program " + command.path +
                               " cannot be started: " + std::strerror(error) + "."};
    }
    return std::unique_ptr<ChildProcess>(new ChildProcess(pid));
}

ChildProcess::ChildProcess(int pid)
    : pid_(pid), endDescriptor_(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0))) {}

ChildProcess::~ChildProcess() {
    killAndReap();
}

std::optional<int> ChildProcess::killAndReap() {
    if (pid_ <= 0) {
        return std::nullopt;
    }
    // Through the descriptor, a process that was reaped by somebody else is not mistaken.
    if (endDescriptor_.isOpen()) {
        ::syscall(SYS_pidfd_send_signal, endDescriptor_.number(), SIGKILL, nullptr, 0);
    } else {
        ::kill(pid_, SIGKILL);
    }
    int status = 0;
    pid_t reaped = -1;
    do {
        reaped = ::waitpid(pid_, &status, 0);
    } while (reaped < 0 && errno == EINTR);
    pid_ = 0;
    return reaped > 0 ? std::optional(status) : std::nullopt;
}

std::vector<std::string> plainEnvironment() {
    std::vector<std::string> environment{"LC_ALL=C.UTF-8"};
    // For libraries that are installed elsewhere.
    if (const std::string path = environmentValue("LD_LIBRARY_PATH"); !path.empty()) {
        environment.push_back("LD_LIBRARY_PATH=" + path);
    }
    return environment;
}

bool saysMissingLibrary(const std::optional<int>& status) {
    return status && WIFEXITED(*status) && WEXITSTATUS(*status) == missingLibraryStatus;
}

}  // namespace platform::helper
