// The recognition helper with an engine that, instead of reading a picture, tries what a helper
// must not be able to do and tells the outcome of each attempt as a line of text.

#include <fcntl.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/tesseract/text_helper.h"

extern char** environ;

// In a build with the address sanitizer: so that the signals of a new process are as usual.
extern "C" const char* __asan_default_options() {
    return "handle_segv=0:handle_sigbus=0:handle_sigfpe=0";
}

namespace {

using Attempt = std::function<bool()>;
using Lines = std::vector<std::string>;

std::string outcome(const std::string& name, bool isDone) {
    return name + ": " + (isDone ? "done" : "refused");
}

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

bool runs() {
    char* const nothing[] = {nullptr};
    ::execve("/bin/true", nothing, nothing);
    return false;
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

bool mapsExecutable() {
    return ::mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) !=
           MAP_FAILED;
}

bool raisesLimit() {
    const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
    return ::setrlimit(RLIMIT_DATA, &unlimited) == 0;
}

bool writesTemporaryFile() {
    const std::string path = "/tmp/lumaframe-probe-" + std::to_string(::getpid());
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ::unlink(path.c_str());
    return file >= 0;
}

bool asksTerminal() {
    winsize size{};
    return isStillPermitted(::ioctl(0, TIOCGWINSZ, &size));
}

Lines attempts() {
    const std::vector<std::pair<std::string, Attempt>> all{
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
        {"run a program", runs},
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
        {"allocate enough", [] { return allocates(std::size_t{1} << 30U); }},
        {"start a thread", startsThread},
    };
    Lines lines;
    for (const auto& [name, attempt] : all) {
        lines.push_back(outcome(name, attempt()));
    }
    return lines;
}

/// What can be told before the door closes.
Lines attemptsWhileLoading() {
    Lines lines{outcome("write a file while loading", writesTemporaryFile()),
                outcome("run a program while loading", runs()),
                outcome("read a file while loading", ::access("/etc/passwd", R_OK) == 0)};
    rlimit core{1, 1};
    ::getrlimit(RLIMIT_CORE, &core);
    int deathSignal = 0;
    ::prctl(PR_GET_PDEATHSIG, &deathSignal);
    lines.push_back("process core " + std::to_string(core.rlim_max));
    lines.push_back("process death signal " + std::to_string(deathSignal));
    lines.push_back("process dumpable " + std::to_string(::prctl(PR_GET_DUMPABLE)));
    for (int number = 0; number < 1024; ++number) {
        if (::fcntl(number, F_GETFD) >= 0) {
            lines.push_back("descriptor " + std::to_string(number));
        }
    }
    sigset_t blocked;
    ::sigprocmask(SIG_SETMASK, nullptr, &blocked);
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action {};
        if (::sigismember(&blocked, number) == 1) {
            lines.push_back("disposition of " + std::to_string(number) + " is blocked");
        }
        if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_DFL) {
            lines.push_back("disposition of " + std::to_string(number) + " is not as usual");
        }
    }
    std::array<char, 64> directory{};
    lines.push_back("directory " +
                    std::string(::getcwd(directory.data(), directory.size()) != nullptr
                                    ? directory.data()
                                    : "?"));
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string text = *variable;
        lines.push_back("variable " + text.substr(0, text.find('=')));
    }
    return lines;
}

base::Result<platform::tesseract::TextEngine> load(const Lines& languages) {
    Lines lines = attemptsWhileLoading();
    for (const std::string& language : languages) {
        lines.push_back("language " + language);
    }
    return platform::tesseract::TextEngine{
        [lines](const base::Image& image) -> base::Result<std::vector<capture::TextObservation>> {
            Lines all = lines;
            all.push_back("pixel " + std::to_string(image.row(0)[0]));
            for (std::string& line : attempts()) {
                all.push_back(std::move(line));
            }
            std::vector<capture::TextObservation> observations;
            for (std::string& line : all) {
                observations.push_back({{std::move(line)}});
            }
            return observations;
        },
        [] {
            // What can be seen from outside.
            ::prctl(PR_SET_NAME, "prepared");
            throw std::runtime_error("There is no room for more.");
        }};
}

}  // namespace

int main(int argumentCount, char** arguments) {
    std::_Exit(argumentCount == 2 ? platform::tesseract::runTextHelper(arguments[1], load) : 1);
}
