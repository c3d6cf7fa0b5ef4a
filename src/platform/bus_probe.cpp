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

/// Opens the conversation that every bus has to answer, if only with a refusal.
bool greets(int connection, std::chrono::milliseconds limit) {
    constexpr std::string_view question("\0AUTH\r\n", 7);
    if (::send(connection, question.data(), question.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(question.size())) {
        return false;
    }
    pollfd answer{connection, POLLIN, 0};
    char letter = 0;
    return ::poll(&answer, 1, static_cast<int>(limit.count())) == 1 &&
           ::recv(connection, &letter, 1, 0) == 1;
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
    const bool answers = isConnected && greets(connection, limit);
    ::close(connection);
    return answers;
}

}  // namespace platform
