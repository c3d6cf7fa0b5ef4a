#include "platform/video/packet_socket.h"

#include <sys/socket.h>
#include <sys/uio.h>

#include <cerrno>

namespace platform::video {

std::optional<std::pair<OwnedDescriptor, OwnedDescriptor>> makePacketSockets() {
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        return std::nullopt;
    }
    return std::pair(OwnedDescriptor(ends[0]), OwnedDescriptor(ends[1]));
}

bool sendPacket(int socket, const std::string& packet) {
    iovec part{const_cast<char*>(packet.data()), packet.size()};
    msghdr envelope{};
    envelope.msg_iov = &part;
    envelope.msg_iovlen = 1;
    for (;;) {
        const ssize_t count = ::sendmsg(socket, &envelope, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0 || errno != EINTR) {
            return count == static_cast<ssize_t>(packet.size());
        }
    }
}

std::variant<std::string, NoPacket> receivePacket(int socket, std::size_t maximumLength,
                                                  Waiting waiting) {
    std::string packet(maximumLength + 1, '\0');
    iovec part{packet.data(), packet.size()};
    msghdr envelope{};
    envelope.msg_iov = &part;
    envelope.msg_iovlen = 1;
    for (;;) {
        const ssize_t count =
            ::recvmsg(socket, &envelope, waiting == Waiting::none ? MSG_DONTWAIT : 0);
        if (count > 0) {
            packet.resize(static_cast<std::size_t>(count));
            return packet;
        }
        if (count < 0 && errno == EINTR) {
            continue;
        }
        const bool isEmpty = count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
        return isEmpty ? NoPacket::nothingYet : NoPacket::closed;
    }
}

}  // namespace platform::video
