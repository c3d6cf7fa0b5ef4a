// What the helper that runs may do, and what it leaves behind in the program that started it.
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "confined_attempts.h"
#include "platform/video/helper_video_looper.h"
#include "video/video_fixture.h"

namespace video_tests {
namespace {

using testing::HasSubstr;
using testing::Not;

class VideoHelper : public VideoFixture {
  protected:
    /// Starts it and has it draw a picture.
    void play() {
        makeFilm(film(), {.pictureCount = 4});
        open();
        ASSERT_TRUE(next());
    }
    [[nodiscard]] int pid() const {
        return dynamic_cast<platform::video::HelperVideoLooper&>(*looper_)
            .helperProcessIdentifier();
    }
    [[nodiscard]] std::string proc(const std::string& name) const {
        std::ifstream file("/proc/" + std::to_string(pid()) + "/" + name);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    [[nodiscard]] unsigned long long statusInBytes(const std::string& name) const {
        const std::string status = proc("status");
        return 1024 * std::stoull(status.substr(status.find(name + ":") + name.size() + 1));
    }
};

TEST_F(VideoHelper, is_confined_and_decodes_on_one_thread) {
    play();
    const std::string status = proc("status");
    EXPECT_THAT(status, HasSubstr("Seccomp:\t2\n"));
    EXPECT_THAT(status, HasSubstr("NoNewPrivs:\t1\n"));
    EXPECT_THAT(status, HasSubstr("Threads:\t1\n"));
}

class ConfinedVideoHelper : public VideoFixture {
  protected:
    ConfinedVideoHelper() : VideoFixture(LUMAFRAME_CONFINED_VIDEO_PROBE) {}
};

TEST_F(ConfinedVideoHelper, with_a_film_can_do_nothing_but_compute) {
    makeFilm(film(), {.pictureCount = 4});
    open();
    const Answer answer = next();
    ASSERT_TRUE(answer) << answer.error().sentence;
    constexpr std::uint8_t refused = 1;
    const std::uint8_t* outcome = answer.value().image.row(0);
    for (const auto& [name, attempt] : confined::forbiddenAttempts()) {
        EXPECT_EQ(*outcome++, refused) << name;
    }
}

TEST_F(VideoHelper, may_not_grow_or_write_files) {
    play();
    const std::string limits = proc("limits");
    std::istringstream lines(limits);
    bool hasMemoryLimit = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("Max data size")) {
            hasMemoryLimit = true;
            EXPECT_THAT(line, Not(HasSubstr("unlimited")));
            const auto bytes = std::stoull(line.substr(line.find_first_of("0123456789")));
            EXPECT_LE(bytes, statusInBytes("VmData") + (512ULL << 20U));
        }
        if (line.starts_with("Max file size") || line.starts_with("Max core file size")) {
            EXPECT_THAT(line, HasSubstr(" 0 "));
        }
    }
    EXPECT_TRUE(hasMemoryLimit);
}

long residentPages() {
    std::ifstream statistics("/proc/self/statm");
    long total = 0;
    long resident = 0;
    statistics >> total >> resident;
    return resident;
}

TEST_F(VideoHelper, gives_all_memory_back_when_the_film_is_closed) {
    makeFilm(film(), {.pictureCount = 4});
    // What is loaded at the first use of anything does not count.
    open();
    ASSERT_TRUE(next());
    looper_.reset();
    const long before = residentPages();
    for (int time = 0; time < 5; ++time) {
        open();
        for (int picture = 0; picture < 4; ++picture) {
            const Answer answer = next({944, 500});
            ASSERT_TRUE(answer);
            ASSERT_NE(numberIn(answer.value().image), -1);
        }
        looper_.reset();
    }
    EXPECT_LT((residentPages() - before) * ::sysconf(_SC_PAGESIZE), 2L << 20U);
}

}  // namespace
}  // namespace video_tests
