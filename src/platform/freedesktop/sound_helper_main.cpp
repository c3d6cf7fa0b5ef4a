#include <sys/prctl.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>

#include "platform/freedesktop/canberra_sound.h"

/// Plays one file and ends. Started by Lumaframe alone: there is nothing here for a person to run.
int main(int count, char** words) {
    if (count != 2) {
        return EXIT_FAILURE;
    }
    // A sound ends with the program that wanted it, and is worth no core file.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    constexpr rlimit none{};
    ::setrlimit(RLIMIT_CORE, &none);
    platform::freedesktop::playThroughCanberra(words[1]);
    // Without the destructors: threads of a sound server's library may still run.
    std::_Exit(EXIT_SUCCESS);
}
