// The recognition helper with an engine that, instead of reading a picture, tries what a helper
// must not be able to do and tells the outcome of each attempt as a line of text.

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "confined_attempts.h"
#include "platform/tesseract/text_helper.h"

extern char** environ;

// In a build with the address sanitizer: so that the signals of a new process are as usual.
extern "C" const char* __asan_default_options() {
    return "handle_segv=0:handle_sigbus=0:handle_sigfpe=0";
}

namespace {

using Lines = std::vector<std::string>;

std::string outcome(const std::string& name, bool isDone) {
    return name + ": " + (isDone ? "done" : "refused");
}

Lines attempts() {
    Lines lines;
    for (const auto& [name, attempt] : confined::forbiddenAttempts()) {
        lines.push_back(outcome(name, attempt()));
    }
    lines.push_back(outcome("allocate enough", confined::allocates(std::size_t{1} << 30U)));
    lines.push_back(outcome("start a thread", confined::startsThread()));
    return lines;
}

/// What can be told before the door closes.
Lines attemptsWhileLoading() {
    Lines lines{outcome("write a file while loading", confined::writesTemporaryFile()),
                outcome("run a program while loading", confined::runsProgram()),
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
