#include "platform/bus_probe.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

namespace platform {

namespace {

struct SocketAddress {
    sockaddr_un address{};
    socklen_t length = 0;
};

/// The socket of an address of the form "unix:path=..." or "unix:abstract=..."; none for several
/// addresses, other kinds, and names that are escaped or too long.
std::optional<SocketAddress> localSocket(std::string_view address) {
    constexpr std::string_view filePrefix = "unix:path=";
    constexpr std::string_view abstractPrefix = "unix:abstract=";
    const bool isFile = address.starts_with(filePrefix);
    if (!isFile && !address.starts_with(abstractPrefix)) {
        return std::nullopt;
    }
    std::string_view name = address.substr(isFile ? filePrefix.size() : abstractPrefix.size());
    if (name.find_first_of(";%") != std::string_view::npos) {
        return std::nullopt;
    }
    name = name.substr(0, name.find(','));
    SocketAddress socket;
    // The name of a socket that is no file comes after a zero byte.
    const std::size_t first = isFile ? 0 : 1;
    if (name.empty() || first + name.size() >= sizeof socket.address.sun_path) {
        return std::nullopt;
    }
    socket.address.sun_family = AF_UNIX;
    std::ranges::copy(name, socket.address.sun_path + first);
    socket.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + first + name.size());
    return socket;
}

/// The first call that every program makes: Hello of the bus itself, in little-endian order.
constexpr std::string_view hello(
    "l\1\0\1\0\0\0\0\1\0\0\0n\0\0\0"
    "\1\1o\0\25\0\0\0/org/freedesktop/DBus\0\0\0"
    "\6\1s\0\24\0\0\0org.freedesktop.DBus\0\0\0\0"
    "\2\1s\0\24\0\0\0org.freedesktop.DBus\0\0\0\0"
    "\3\1s\0\5\0\0\0Hello\0\0\0",
    128);

std::string hexadecimal(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string encoded;
    for (const char character : text) {
        encoded += digits[static_cast<unsigned char>(character) >> 4U];
        encoded += digits[static_cast<unsigned char>(character) & 0xfU];
    }
    return encoded;
}

/// One conversation with a bus, which has to be over at a fixed time.
class Conversation {
  public:
    Conversation(int connection, std::chrono::milliseconds limit)
        : connection_(connection), end_(std::chrono::steady_clock::now() + limit) {}

    [[nodiscard]] bool say(std::string_view text) const {
        return ::send(connection_, text.data(), text.size(), MSG_NOSIGNAL) ==
               static_cast<ssize_t>(text.size());
    }
    /// What comes next, empty when nothing does.
    [[nodiscard]] std::string answer() const {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end_ - std::chrono::steady_clock::now());
        pollfd readable{connection_, POLLIN, 0};
        std::string text(64, '\0');
        if (::poll(&readable, 1, std::max(0, static_cast<int>(left.count()))) != 1) {
            return {};
        }
        const ssize_t length = ::recv(connection_, text.data(), text.size(), 0);
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(0, length)));
        return text;
    }

  private:
    int connection_;
    std::chrono::steady_clock::time_point end_;
};

/// Makes itself known and calls once, since a bus may hang at any step of that.
bool greets(const Conversation& bus) {
    const std::string user = hexadecimal(std::to_string(::getuid()));
    if (!bus.say(std::string_view("\0", 1)) || !bus.say("AUTH EXTERNAL " + user + "\r\n")) {
        return false;
    }
    const std::string verdict = bus.answer();
    if (!verdict.starts_with("OK")) {
        // One that lets programs in by other means is for the library to talk to.
        return !verdict.empty();
    }
    return bus.say("BEGIN\r\n") && bus.say(hello) && !bus.answer().empty();
}

}  // namespace

bool busAnswers(const std::string& address, std::chrono::milliseconds limit) {
    const auto target = localSocket(address);
    if (!target) {
        return true;
    }
    const int connection = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (connection < 0) {
        return true;
    }
    const bool isConnected =
        ::connect(connection, reinterpret_cast<const sockaddr*>(&target->address),
                  target->length) == 0;
    const bool answers = isConnected && greets(Conversation(connection, limit));
    ::close(connection);
    return answers;
}

}  // namespace platform
