// Preloaded into a program: its monotonic clock is as many seconds on as the file that
// LUMAFRAME_TEST_LATER names has bytes. So a minute passes when a test says so.
#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdlib>
#include <ctime>

extern "C" [[gnu::visibility("default")]] int clock_gettime(clockid_t clock,
                                                            timespec* time) noexcept {
    using GetTime = int (*)(clockid_t, timespec*);
    static const auto getTime = reinterpret_cast<GetTime>(::dlsym(RTLD_NEXT, "clock_gettime"));
    static const char* const file = std::getenv("LUMAFRAME_TEST_LATER");
    const int result = getTime(clock, time);
    struct stat status {};
    if (result == 0 && clock == CLOCK_MONOTONIC && file != nullptr && ::stat(file, &status) == 0) {
        time->tv_sec += status.st_size;
    }
    return result;
}
