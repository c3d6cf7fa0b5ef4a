#include "platform/session.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

namespace {

using platform::Session;

class SessionEnvironment : public testing::Test {
  protected:
    SessionEnvironment() {
        for (const char* name :
             {"DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR",
              "DBUS_STARTER_ADDRESS", "DBUS_STARTER_BUS_TYPE"}) {
            ::unsetenv(name);
        }
    }
};

TEST_F(SessionEnvironment, an_empty_environment_has_nothing) {
    const Session session = Session::fromEnvironment();
    EXPECT_EQ(session.xDisplay, "");
    EXPECT_EQ(session.waylandDisplay, "");
    EXPECT_FALSE(session.hasSessionBus);
    EXPECT_FALSE(session.isStartedByBus);
}

TEST_F(SessionEnvironment, a_runtime_directory_without_a_socket_is_no_bus) {
    ::setenv("XDG_RUNTIME_DIR", "/nonexistent", 1);
    EXPECT_FALSE(Session::fromEnvironment().hasSessionBus);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/somewhere", 1);
    EXPECT_TRUE(Session::fromEnvironment().hasSessionBus);
}

TEST_F(SessionEnvironment, a_start_by_the_session_bus_is_seen_and_then_forgotten) {
    ::setenv("DBUS_STARTER_ADDRESS", "unix:path=/somewhere", 1);
    ::setenv("DBUS_STARTER_BUS_TYPE", "system", 1);
    EXPECT_FALSE(Session::fromEnvironment().isStartedByBus);
    ::setenv("DBUS_STARTER_BUS_TYPE", "session", 1);
    const Session session = Session::fromEnvironment();
    EXPECT_TRUE(session.isStartedByBus);
    platform::settleEnvironment(session);
    EXPECT_EQ(std::getenv("DBUS_STARTER_ADDRESS"), nullptr);
    EXPECT_EQ(std::getenv("DBUS_STARTER_BUS_TYPE"), nullptr);
}

TEST_F(SessionEnvironment, without_a_bus_none_is_started_by_a_library) {
    platform::settleEnvironment(Session::fromEnvironment());
    EXPECT_STREQ(std::getenv("DBUS_SESSION_BUS_ADDRESS"), "disabled:");
    EXPECT_FALSE(Session::fromEnvironment().hasSessionBus);
}

TEST_F(SessionEnvironment, directories_that_are_relative_are_none) {
    for (const char* name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
                             "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
        for (const char* relative : {"runtime", ".", "../data", ""}) {
            ::setenv(name, relative, 1);
            platform::settleEnvironment(Session::fromEnvironment());
            EXPECT_EQ(std::getenv(name), nullptr) << name << "=" << relative;
        }
        ::setenv(name, "/absolute", 1);
        platform::settleEnvironment(Session::fromEnvironment());
        EXPECT_STREQ(std::getenv(name), "/absolute");
        ::unsetenv(name);
    }
}

TEST_F(SessionEnvironment, a_reader_of_the_log_that_leaves_does_not_end_the_program) {
    platform::settleEnvironment(Session::fromEnvironment());
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    ::close(pipe[0]);
    EXPECT_EQ(::write(pipe[1], "line\n", 5), -1);
    EXPECT_EQ(errno, EPIPE);
    ::close(pipe[1]);
}

TEST_F(SessionEnvironment, a_bus_that_does_not_answer_is_none) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    platform::settleEnvironment(Session::fromEnvironment());
    EXPECT_FALSE(Session::fromEnvironment().hasSessionBus);
}

}  // namespace
