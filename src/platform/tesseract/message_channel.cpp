#include "platform/tesseract/message_channel.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

namespace platform::tesseract {

namespace {

/// Room for one descriptor beside the bytes of a message.
struct alignas(cmsghdr) ControlBuffer {
    char bytes[CMSG_SPACE(sizeof(int))] = {};
};

/// What poll takes: rounded up, so that a wait never ends before its deadline.
int millisecondsUntil(const Deadline& deadline) {
    if (!deadline) {
        return -1;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(
        left.count(), 0, std::numeric_limits<int>::max()));
}

bool isTemporary(int error) {
    return error == EINTR || error == EAGAIN || error == EWOULDBLOCK;
}

/// Every descriptor that came with `message`; the buffer has room for more than it is meant for.
std::vector<OwnedDescriptor> takeDescriptors(msghdr& message) {
    std::vector<OwnedDescriptor> taken;
    for (cmsghdr* part = CMSG_FIRSTHDR(&message); part != nullptr;
         part = CMSG_NXTHDR(&message, part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS) {
            continue;
        }
        const std::size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (std::size_t index = 0; index < count; ++index) {
            int number = -1;
            std::memcpy(&number, CMSG_DATA(part) + index * sizeof number, sizeof number);
            taken.emplace_back(number);
        }
    }
    return taken;
}

void attach(msghdr& message, ControlBuffer& control, int number) {
    message.msg_control = control.bytes;
    message.msg_controllen = sizeof control.bytes;
    cmsghdr* const part = CMSG_FIRSTHDR(&message);
    part->cmsg_level = SOL_SOCKET;
    part->cmsg_type = SCM_RIGHTS;
    part->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(part), &number, sizeof number);
}

}  // namespace

std::optional<ChannelFailure> MessageChannel::waitFor(short events,
                                                      const Deadline& deadline) const {
    for (;;) {
        pollfd watched{socket_.number(), events, 0};
        const int count = ::poll(&watched, 1, millisecondsUntil(deadline));
        if (count > 0) {
            return std::nullopt;
        }
        if (count == 0) {
            return ChannelFailure::timedOut;
        }
        if (errno != EINTR) {
            return ChannelFailure::closed;
        }
    }
}

std::optional<ChannelFailure> MessageChannel::send(const std::string& message,
                                                   const Deadline& deadline, int attached) {
    std::size_t sent = 0;
    while (sent < message.size()) {
        if (const auto failure = waitFor(POLLOUT, deadline)) {
            return failure;
        }
        iovec part{const_cast<char*>(message.data()) + sent, message.size() - sent};
        msghdr envelope{};
        envelope.msg_iov = &part;
        envelope.msg_iovlen = 1;
        ControlBuffer control;
        if (attached >= 0 && sent == 0) {
            attach(envelope, control, attached);
        }
        const ssize_t count = ::sendmsg(socket_.number(), &envelope, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && !isTemporary(errno)) {
            return ChannelFailure::closed;
        }
        sent += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return std::nullopt;
}

std::optional<ChannelFailure> MessageChannel::receiveInto(char* bytes, std::size_t length,
                                                          const Deadline& deadline,
                                                          OwnedDescriptor& descriptor) {
    std::size_t received = 0;
    while (received < length) {
        if (const auto failure = waitFor(POLLIN, deadline)) {
            return failure;
        }
        iovec part{bytes + received, length - received};
        ControlBuffer control;
        msghdr envelope{};
        envelope.msg_iov = &part;
        envelope.msg_iovlen = 1;
        if (attachment_ == Attachment::oneDescriptor) {
            envelope.msg_control = control.bytes;
            envelope.msg_controllen = sizeof control.bytes;
        }
        const ssize_t count =
            ::recvmsg(socket_.number(), &envelope, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
        if (count == 0 || (count < 0 && !isTemporary(errno))) {
            return ChannelFailure::closed;
        }
        if (count < 0) {
            continue;
        }
        auto came = takeDescriptors(envelope);
        if ((envelope.msg_flags & MSG_CTRUNC) != 0 ||
            came.size() + (descriptor.isOpen() ? 1 : 0) > 1) {
            return ChannelFailure::nonsense;
        }
        if (!came.empty()) {
            descriptor = std::move(came.front());
        }
        received += static_cast<std::size_t>(count);
    }
    return std::nullopt;
}

std::variant<Message, ChannelFailure> MessageChannel::receive(const Deadline& deadline) {
    Message message;
    char bytes[headerLength];
    if (const auto failure = receiveInto(bytes, headerLength, deadline, message.descriptor)) {
        return *failure;
    }
    const auto header = decodeHeader({bytes, headerLength});
    if (!header) {
        return ChannelFailure::nonsense;
    }
    message.header = *header;
    message.payload.resize(header->payloadLength);
    if (const auto failure = receiveInto(message.payload.data(), message.payload.size(), deadline,
                                         message.descriptor)) {
        return *failure;
    }
    return message;
}

bool MessageChannel::hasInput(std::chrono::milliseconds wait) const {
    pollfd watched{socket_.number(), POLLIN, 0};
    return ::poll(&watched, 1, static_cast<int>(wait.count())) != 0;
}

}  // namespace platform::tesseract
