#include "platform/freedesktop/theme_sound_player.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "desktop/process.h"
#include "platform/freedesktop/file_handle.h"
#include "platform/freedesktop/temporary_directory.h"

namespace {

using freedesktop_tests::TemporaryDirectory;
using platform::freedesktop::FileHandle;
using platform::freedesktop::ThemeSoundPlayer;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* sounds = LUMAFRAME_SOURCE_RESOURCES "/sounds";

/// A sound server that takes connections and never says a word.
class SilentSoundServer {
  public:
    explicit SilentSoundServer(const std::string& path)
        : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(socket_.get(), 8), 0);
    }

    /// The next connection, waited for.
    [[nodiscard]] FileHandle visitor() const {
        return FileHandle(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    }

  private:
    FileHandle socket_;
};

/// Whether whoever connected has closed, which is at the latest when it has ended.
bool hasGone(const FileHandle& visitor) {
    std::array<char, 4096> said{};
    ssize_t length = 0;
    do {
        length = ::recv(visitor.get(), said.data(), said.size(), 0);
    } while (length > 0);
    return length == 0 || errno == ECONNRESET;
}

class SoundPlayer : public testing::Test {
  protected:
    std::unique_ptr<desktop::Process> play(const std::string& server, const std::string& wait) {
        return std::make_unique<desktop::Process>(desktop::ProcessOptions{
            .command = {LUMAFRAME_SOUND_PROBE, sounds, LUMAFRAME_SOUND_HELPER, wait},
            .environment = {{"HOME", directory_.path()},
                            {"XDG_RUNTIME_DIR", directory_.path()},
                            {"PULSE_SERVER", server},
                            {"PATH", "/usr/bin:/bin"}},
            .outputFile = directory_.path("probe")});
    }
    TemporaryDirectory directory_;
};

TEST_F(SoundPlayer, the_sounds_of_the_program_are_found) {
    ThemeSoundPlayer player({}, sounds, LUMAFRAME_SOUND_HELPER);
    EXPECT_EQ(player.soundNamed("Hero"), std::nullopt);
    ASSERT_TRUE(player.soundInFallbackFile("Hero").has_value());
    ASSERT_TRUE(player.soundInFallbackFile("Glass").has_value());
    EXPECT_FALSE(player.soundInFallbackFile("Nothing").has_value());
}

TEST_F(SoundPlayer, without_a_sound_server_nothing_waits_and_nothing_is_printed) {
    const auto probe = play("unix:" + directory_.path("nobody"), "1500");
    EXPECT_EQ(probe->waitForExit(), 0);
    ASSERT_THAT(probe->outputLines(), SizeIs(1));
    EXPECT_LT(std::stol(probe->outputLines().front()), 100000);
    EXPECT_THAT(probe->errorLines(), IsEmpty());
}

TEST_F(SoundPlayer, a_server_that_does_not_answer_holds_neither_the_calls_nor_the_end) {
    const SilentSoundServer server(directory_.path("silent"));
    const auto probe = play("unix:" + directory_.path("silent"), "500");
    EXPECT_EQ(probe->waitForExit(std::chrono::seconds(10)), 0);
    ASSERT_THAT(probe->outputLines(), SizeIs(1));
    EXPECT_LT(std::stol(probe->outputLines().front()), 100000);
    EXPECT_THAT(probe->errorLines(), IsEmpty());
}

TEST_F(SoundPlayer, two_sounds_play_at_once_and_end_with_the_program) {
    const SilentSoundServer server(directory_.path("silent"));
    const auto probe = play("unix:" + directory_.path("silent"), "60000");
    const std::array visitors{server.visitor(), server.visitor()};
    EXPECT_FALSE(std::ranges::any_of(visitors, hasGone));
    probe->signal(SIGKILL);
    ASSERT_TRUE(probe->waitForExit().has_value());
    EXPECT_TRUE(desktop::waitUntil([&] { return std::ranges::all_of(visitors, hasGone); }));
}

TEST_F(SoundPlayer, without_its_helper_nothing_is_heard_or_said) {
    desktop::Process probe({.command = {LUMAFRAME_SOUND_PROBE, sounds, "/nowhere", "100"},
                            .environment = {{"PATH", "/usr/bin:/bin"}},
                            .outputFile = directory_.path("probe")});
    EXPECT_EQ(probe.waitForExit(), 0);
    EXPECT_THAT(probe.errorLines(), IsEmpty());
}

}  // namespace
