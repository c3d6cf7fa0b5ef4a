#include "platform/session.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>

#include "platform/bus_probe.h"
#include "platform/environment.h"

namespace platform {

namespace {

/// An address of a kind that no library knows how to connect to.
constexpr const char* noBusAddress = "disabled:";
/// A bus that the connection itself has to start needs a moment.
constexpr std::chrono::seconds busPatience{3};

bool isSocket(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

/// The rule of the bus library: the variable, else the socket in the runtime directory. Empty
/// without a bus.
std::string sessionBusAddress() {
    const std::string address = environmentValue("DBUS_SESSION_BUS_ADDRESS");
    if (!address.empty()) {
        return address == noBusAddress ? std::string() : address;
    }
    const std::string socket = environmentValue("XDG_RUNTIME_DIR") + "/bus";
    return socket.starts_with('/') && isSocket(socket) ? "unix:path=" + socket : std::string();
}

/// A program that is started without them would open its files and sockets under the numbers of
/// the standard streams, and print into them.
void openMissingStandardStreams() {
    int descriptor = ::open("/dev/null", O_RDWR);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO) {
        descriptor = ::open("/dev/null", O_RDWR);
    }
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

/// A relative path counts as none, says the XDG Base Directory Specification. Not every library
/// knows, and some make the folder below wherever the program was started.
void forgetRelativeDirectories() {
    for (const char* name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
                             "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
        if (!environmentValue(name).starts_with('/')) {
            ::unsetenv(name);
        }
    }
}

}  // namespace

Session Session::fromEnvironment() {
    return {.xDisplay = environmentValue("DISPLAY"),
            .waylandDisplay = environmentValue("WAYLAND_DISPLAY"),
            .hasSessionBus = !sessionBusAddress().empty(),
            .isStartedByBus = !environmentValue("DBUS_STARTER_ADDRESS").empty() &&
                              environmentValue("DBUS_STARTER_BUS_TYPE") == "session"};
}

void settleEnvironment(const Session& session) {
    openMissingStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);
    ::unsetenv("DBUS_STARTER_ADDRESS");
    ::unsetenv("DBUS_STARTER_BUS_TYPE");
    forgetRelativeDirectories();
    if (!session.hasSessionBus || !busAnswers(sessionBusAddress(), busPatience)) {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", noBusAddress, 1);
    }
}

}  // namespace platform
