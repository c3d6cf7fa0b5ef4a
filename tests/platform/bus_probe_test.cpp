#include "platform/bus_probe.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <thread>

namespace {

using platform::busAnswers;
using namespace std::chrono_literals;

/// A socket that programs can connect to. It says nothing unless it is told to.
class BusProbe : public testing::Test {
  protected:
    BusProbe() {
        char pattern[] = "/tmp/lumaframe-bus-XXXXXX";
        directory_ = ::mkdtemp(pattern);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().copy(address.sun_path, sizeof address.sun_path - 1);
        listener_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        EXPECT_EQ(::bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(listener_, 4), 0);
    }
    ~BusProbe() override {
        ::close(listener_);
        std::filesystem::remove_all(directory_);
    }

    [[nodiscard]] std::string path() const { return directory_ + "/bus"; }

    std::string directory_;
    int listener_ = -1;
};

/// Reads until what came ends with `ending`.
void readUntil(int connection, std::string_view ending) {
    std::string text;
    for (char letter = 0; ::recv(connection, &letter, 1, 0) == 1;) {
        text += letter;
        if (text.ends_with(ending)) {
            return;
        }
    }
    ADD_FAILURE() << "The program left after: " << text;
}

void say(int connection, std::string_view text) {
    EXPECT_EQ(::send(connection, text.data(), text.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(text.size()));
}

TEST_F(BusProbe, a_bus_that_answers_the_first_call_is_one) {
    std::thread bus([this] {
        const int connection = ::accept(listener_, nullptr, nullptr);
        readUntil(connection, "\r\n");
        say(connection, "OK 0123456789abcdef0123456789abcdef\r\n");
        readUntil(connection, std::string_view("Hello\0\0\0", 8));
        say(connection, "l");
        ::close(connection);
    });
    EXPECT_TRUE(busAnswers("unix:path=" + path() + ",guid=0123", 10s));
    bus.join();
}

TEST_F(BusProbe, a_bus_that_refuses_is_left_to_the_library) {
    std::thread bus([this] {
        const int connection = ::accept(listener_, nullptr, nullptr);
        readUntil(connection, "\r\n");
        say(connection, "REJECTED ANONYMOUS\r\n");
        ::close(connection);
    });
    EXPECT_TRUE(busAnswers("unix:path=" + path(), 10s));
    bus.join();
}

TEST_F(BusProbe, a_bus_that_greets_and_then_hangs_is_none) {
    std::thread bus([this] {
        const int connection = ::accept(listener_, nullptr, nullptr);
        readUntil(connection, "\r\n");
        say(connection, "OK 0123456789abcdef0123456789abcdef\r\n");
        readUntil(connection, std::string_view("Hello\0\0\0", 8));
        char letter = 0;
        EXPECT_EQ(::recv(connection, &letter, 1, 0), 0) << "The program goes on its way.";
        ::close(connection);
    });
    EXPECT_FALSE(busAnswers("unix:path=" + path(), 200ms));
    bus.join();
}

TEST_F(BusProbe, a_bus_that_takes_connections_and_says_nothing_is_none) {
    EXPECT_FALSE(busAnswers("unix:path=" + path(), 50ms));
}

TEST_F(BusProbe, an_address_that_nobody_listens_at_is_none) {
    EXPECT_FALSE(busAnswers("unix:path=" + path() + "-gone", 10s));
    EXPECT_FALSE(busAnswers("unix:abstract=" + path() + "-gone", 10s));
}

TEST_F(BusProbe, an_address_of_another_kind_is_left_to_the_library) {
    for (const std::string address : {"tcp:host=localhost,port=1", "unix:path=/a;unix:path=/b",
                                      "unix:path=/a%20b", "unix:path=", "unix:tmpdir=/tmp", ""}) {
        EXPECT_TRUE(busAnswers(address, 50ms)) << address;
    }
    EXPECT_TRUE(busAnswers("unix:path=/" + std::string(200, 'x'), 50ms));
}

}  // namespace
