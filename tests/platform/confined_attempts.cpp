#include "confined_attempts.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <thread>

namespace confined {

namespace {

bool succeeds(long result) {
    return result >= 0;
}

bool forks() {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(0);
    }
    return child > 0;
}

/// `clone3` with nothing but the signal for the end, which is what fork is.
bool clones() {
    std::uint64_t arguments[11] = {};
    arguments[4] = SIGCHLD;
    const long child = ::syscall(SYS_clone3, arguments, sizeof arguments);
    if (child == 0) {
        ::_exit(0);
    }
    return child > 0;
}

/// Whether it failed for another reason than a refusal.
bool isStillPermitted(long result) {
    return result >= 0 || (errno != EPERM && errno != ENOSYS);
}

bool readsOtherMemory() {
    char byte = 0;
    const iovec here{&byte, 1};
    const iovec there{&byte, 1};
    return isStillPermitted(::process_vm_readv(::getppid(), &here, 1, &there, 1, 0));
}

bool mapsExecutable() {
    return ::mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) !=
           MAP_FAILED;
}

bool raisesLimit() {
    const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
    return ::setrlimit(RLIMIT_DATA, &unlimited) == 0;
}

bool asksTerminal() {
    winsize size{};
    return isStillPermitted(::ioctl(0, TIOCGWINSZ, &size));
}

}  // namespace

std::vector<std::pair<std::string, Attempt>> forbiddenAttempts() {
    return {
        {"write a file", writesTemporaryFile},
        {"open a file for writing", [] { return succeeds(::open("/dev/null", O_WRONLY)); }},
        {"open a file for reading", [] { return succeeds(::open("/etc/passwd", O_RDONLY)); }},
        {"make a directory", [] { return succeeds(::mkdir("/tmp/lumaframe-probe", 0700)); }},
        {"remove a file", [] { return isStillPermitted(::unlink("/nonexistent")); }},
        {"rename a file", [] { return isStillPermitted(::rename("/nonexistent", "/nowhere")); }},
        {"change rights", [] { return isStillPermitted(::chmod("/nonexistent", 0700)); }},
        {"make memory with a name", [] { return succeeds(::memfd_create("probe", 0)); }},
        {"make an internet socket", [] { return succeeds(::socket(AF_INET, SOCK_STREAM, 0)); }},
        {"make a local socket", [] { return succeeds(::socket(AF_UNIX, SOCK_STREAM, 0)); }},
        {"run a program", runsProgram},
        {"fork", forks},
        {"clone", clones},
        {"leave the namespace", [] { return succeeds(::unshare(CLONE_FS)); }},
        {"trace", [] { return isStillPermitted(::ptrace(PTRACE_TRACEME, 0, 0, 0)); }},
        {"signal another", [] { return succeeds(::kill(::getppid(), 0)); }},
        {"read the memory of another", readsOtherMemory},
        {"ask a terminal", asksTerminal},
        {"make a ring", [] { return isStillPermitted(::syscall(SYS_io_uring_setup, 0, nullptr)); }},
        {"map executable memory", mapsExecutable},
        {"raise a limit", raisesLimit},
        {"allocate too much", [] { return allocates(std::size_t{8} << 30U); }},
    };
}

bool runsProgram() {
    char* const nothing[] = {nullptr};
    ::execve("/bin/true", nothing, nothing);
    return false;
}

bool startsThread() {
    bool isRun = false;
    std::thread([&] { isRun = true; }).join();
    return isRun;
}

/// Through volatile, so that the compiler cannot leave the allocation out.
bool allocates(std::size_t length) {
    void* volatile memory = ::mmap(nullptr, length, PROT_READ | PROT_WRITE,
                                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    const bool isDone = memory != MAP_FAILED;
    if (isDone) {
        ::munmap(memory, length);
    }
    return isDone;
}

bool writesTemporaryFile() {
    const std::string path = "/tmp/lumaframe-probe-" + std::to_string(::getpid());
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ::unlink(path.c_str());
    return file >= 0;
}

}  // namespace confined
