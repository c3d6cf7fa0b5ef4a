// A process that is ended in the middle of a write, at fifty moments.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <random>

#include "doubles/fake_log.h"
#include "doubles/manual_main_queue.h"
#include "platform/freedesktop/json_settings_backend.h"
#include "platform/freedesktop/temporary_directory.h"
#include "platform/freedesktop/xdg_file_manager.h"

namespace {

using freedesktop_tests::TemporaryDirectory;
using platform::freedesktop::JsonSettingsBackend;
using platform::freedesktop::XdgDirectories;
using platform::freedesktop::XdgFileManager;

char letterOf(int number) {
    return "abcdefghi"[number % 9];
}

class KilledWriter : public testing::TestWithParam<int> {
  protected:
    /// Fifty times: a process that calls `write` with 0, 1, 2, ... until the signal ends it, then
    /// `check`.
    void repeat(const std::function<void(int)>& write, const std::function<void()>& check) {
        std::mt19937 random(1);
        for (int moment = 0; moment < 50 && !HasFailure(); ++moment) {
            int started[2];
            ASSERT_EQ(::pipe(started), 0);
            const pid_t writer = ::fork();
            if (writer == 0) {
                std::signal(SIGTERM, SIG_DFL);
                for (int number = 0;; ++number) {
                    write(number);
                    // Only what comes after the first write is the middle of something.
                    if (number == 0 && ::write(started[1], "!", 1) != 1) {
                        ::_exit(1);
                    }
                }
            }
            char sign = 0;
            ASSERT_EQ(::read(started[0], &sign, 1), 1);
            const timespec pause{0, std::uniform_int_distribution<long>(0, 2'000'000)(random)};
            ::ppoll(nullptr, 0, &pause, nullptr);
            ::kill(writer, GetParam());
            int status = 0;
            ASSERT_EQ(::waitpid(writer, &status, 0), writer);
            ASSERT_TRUE(WIFSIGNALED(status));
            ::close(started[0]);
            ::close(started[1]);
            check();
        }
    }

    TemporaryDirectory directory_;
};

INSTANTIATE_TEST_SUITE_P(Signals, KilledWriter, testing::Values(SIGKILL, SIGTERM),
                         [](const auto& parameter) {
                             return parameter.param == SIGKILL ? "kill" : "term";
                         });

TEST_P(KilledWriter, leaves_settings_that_are_the_old_or_the_new) {
    doubles::FakeLog log;
    doubles::ManualMainQueue queue;
    XdgDirectories directories;
    directories.configHome = directory_.path("config");
    const auto open = [&] {
        return JsonSettingsBackend::create(
            directories, log, queue,
            [](int, const std::function<void()>&) { return std::make_shared<int>(0); });
    };
    const auto settings = open();
    ASSERT_TRUE(settings->write("first", true));
    queue.runAll();
    repeat(
        [&](int number) {
            static_cast<void>(settings->write("ocrSavePath", std::string(9000, letterOf(number))));
        },
        [&] {
            const auto value = open()->read("ocrSavePath");
            ASSERT_TRUE(value.has_value());
            const auto text = std::get<std::string>(*value);
            EXPECT_EQ(text, std::string(9000, text.empty() ? '-' : text.front()));
            EXPECT_TRUE(open()->read("first").has_value());
            EXPECT_TRUE(log.lines.empty()) << log.lines.front();
        });
}

TEST_P(KilledWriter, leaves_a_text_that_is_the_old_or_the_new) {
    XdgFileManager files{XdgDirectories{}};
    const std::string path = directory_.path("text.txt");
    repeat(
        [&](int number) {
            static_cast<void>(
                files.writeTextAtomically(path, std::string(200'000, letterOf(number))));
        },
        [&] {
            const std::string text = directory_.read("text.txt");
            EXPECT_EQ(text, std::string(200'000, text.empty() ? '-' : text.front()));
        });
    // Only between two calls has what is written a name of its own.
    EXPECT_LT(std::distance(std::filesystem::directory_iterator(directory_.path()), {}), 10);
}

TEST_P(KilledWriter, leaves_a_picture_that_is_whole_or_its_beginning) {
    XdgFileManager files{XdgDirectories{}};
    const std::string path = directory_.path("picture.png");
    std::string picture;
    for (int index = 0; index < 400'000; ++index) {
        picture += static_cast<char>(index * 7 % 251);
    }
    repeat(
        [&](int) {
            static_cast<void>(files.write(
                path, {reinterpret_cast<const std::uint8_t*>(picture.data()), picture.size()}));
        },
        [&] { EXPECT_TRUE(picture.starts_with(directory_.read("picture.png"))); });
}

}  // namespace
