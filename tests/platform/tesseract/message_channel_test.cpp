#include "platform/tesseract/message_channel.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace platform::tesseract;

Deadline soon() {
    return std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
}

Deadline late() {
    return std::chrono::steady_clock::now() + std::chrono::seconds(15);
}

/// Sends bytes with descriptors as a stranger might.
void sendRaw(int socket, const std::string& bytes, const std::vector<int>& descriptors) {
    iovec part{const_cast<char*>(bytes.data()), bytes.size()};
    std::vector<char> control(CMSG_SPACE(sizeof(int) * descriptors.size()));
    msghdr envelope{};
    envelope.msg_iov = &part;
    envelope.msg_iovlen = 1;
    envelope.msg_control = control.data();
    envelope.msg_controllen = control.size();
    cmsghdr* const header = CMSG_FIRSTHDR(&envelope);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int) * descriptors.size());
    std::memcpy(CMSG_DATA(header), descriptors.data(), sizeof(int) * descriptors.size());
    ASSERT_GT(::sendmsg(socket, &envelope, MSG_NOSIGNAL), 0);
}

int openDescriptorCount() {
    int count = 0;
    for (int number = 0; number < 256; ++number) {
        count += ::fcntl(number, F_GETFD) >= 0 ? 1 : 0;
    }
    return count;
}

class MessageChannelTest : public testing::Test {
  protected:
    MessageChannelTest() {
        int ends[2];
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        raw_ = ends[0];
        other_ = OwnedDescriptor(ends[0]);
        near_ = OwnedDescriptor(ends[1]);
    }
    std::variant<Message, ChannelFailure> receive(Attachment attachment, const Deadline& deadline) {
        MessageChannel channel(std::move(near_), attachment);
        return channel.receive(deadline);
    }
    ChannelFailure failureOf(Attachment attachment) {
        const auto received = receive(attachment, soon());
        EXPECT_TRUE(std::holds_alternative<ChannelFailure>(received));
        return std::get<ChannelFailure>(received);
    }

    int raw_ = -1;
    OwnedDescriptor other_;
    OwnedDescriptor near_;
};

TEST_F(MessageChannelTest, a_large_message_comes_through_whole) {
    const std::string text(4U << 20U, 'x');
    const std::string bytes = encodeObservations(5, {{{text}}});
    std::thread sender(
        [&, channel = MessageChannel(std::move(other_), Attachment::none)]() mutable {
            EXPECT_FALSE(channel.send(bytes, late()));
        });
    const auto received = receive(Attachment::none, late());
    sender.join();
    ASSERT_TRUE(std::holds_alternative<Message>(received));
    const auto observations = decodeObservations(std::get<Message>(received).payload);
    ASSERT_TRUE(observations);
    EXPECT_EQ(observations->front().candidates.front(), text);
}

TEST_F(MessageChannelTest, a_descriptor_comes_along_where_it_is_welcome) {
    MessageChannel sender(std::move(other_), Attachment::none);
    ASSERT_FALSE(sender.send(encodePicture(1, {1, 1, 4}), soon(), STDIN_FILENO));
    const auto received = receive(Attachment::oneDescriptor, soon());
    ASSERT_TRUE(std::holds_alternative<Message>(received));
    const auto& descriptor = std::get<Message>(received).descriptor;
    ASSERT_TRUE(descriptor.isOpen());
    EXPECT_EQ(::fcntl(descriptor.number(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_F(MessageChannelTest, a_descriptor_is_refused_where_it_is_not_and_not_kept) {
    const int before = openDescriptorCount();
    sendRaw(raw_, encodeReady(), {STDIN_FILENO});
    EXPECT_EQ(failureOf(Attachment::none), ChannelFailure::nonsense);
    EXPECT_EQ(openDescriptorCount(), before - 1);
}

TEST_F(MessageChannelTest, several_descriptors_are_refused_and_not_kept) {
    const int before = openDescriptorCount();
    sendRaw(raw_, encodeReady(), std::vector<int>(20, STDIN_FILENO));
    EXPECT_EQ(failureOf(Attachment::oneDescriptor), ChannelFailure::nonsense);
    EXPECT_EQ(openDescriptorCount(), before - 1);
}

TEST_F(MessageChannelTest, two_descriptors_one_after_the_other_are_refused) {
    const std::string message = encodePicture(1, {1, 1, 4});
    sendRaw(raw_, message.substr(0, 4), {STDIN_FILENO});
    sendRaw(raw_, message.substr(4), {STDIN_FILENO});
    EXPECT_EQ(failureOf(Attachment::oneDescriptor), ChannelFailure::nonsense);
}

TEST_F(MessageChannelTest, silence_ends_at_the_deadline) {
    EXPECT_EQ(failureOf(Attachment::none), ChannelFailure::timedOut);
}

TEST_F(MessageChannelTest, a_message_that_stops_half_way_ends_at_the_deadline) {
    const std::string message = encodeObservations(1, {{{"text"}}});
    ASSERT_GT(::send(raw_, message.data(), message.size() - 1, 0), 0);
    EXPECT_EQ(failureOf(Attachment::none), ChannelFailure::timedOut);
}

TEST_F(MessageChannelTest, a_closed_end_is_told_both_ways) {
    other_ = {};
    MessageChannel channel(std::move(near_), Attachment::none);
    EXPECT_TRUE(channel.hasInput());
    EXPECT_EQ(channel.send(encodeReady(), soon()), ChannelFailure::closed);
    EXPECT_EQ(std::get<ChannelFailure>(channel.receive(soon())), ChannelFailure::closed);
}

TEST_F(MessageChannelTest, sending_to_somebody_who_does_not_read_ends_at_the_deadline) {
    MessageChannel channel(std::move(near_), Attachment::none);
    EXPECT_FALSE(channel.hasInput());
    const std::string bytes = encodeObservations(5, {{{std::string(8U << 20U, 'x')}}});
    EXPECT_EQ(channel.send(bytes, soon()), ChannelFailure::timedOut);
}

TEST_F(MessageChannelTest, what_is_no_header_is_nonsense) {
    ASSERT_GT(::send(raw_, "GET / HTTP/1.1\r\n\r\n", 18, 0), 0);
    EXPECT_EQ(failureOf(Attachment::none), ChannelFailure::nonsense);
}

}  // namespace
