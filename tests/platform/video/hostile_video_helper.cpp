// Stands in for the video helper and misbehaves in the way that the name says under which it is
// started.

#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <variant>

#include "platform/video/packet_socket.h"
#include "platform/video/video_helper_command.h"
#include "platform/video/video_protocol.h"

namespace {

using namespace platform::video;

void say(const std::string& packet) {
    sendPacket(socketDescriptor, packet);
}

FrameRequest request() {
    const auto received =
        receivePacket(socketDescriptor, requestLength, Waiting::untilSomethingComes);
    const auto* const packet = std::get_if<std::string>(&received);
    const auto decoded = packet == nullptr ? std::nullopt : decodeRequest(*packet);
    if (!decoded) {
        std::_Exit(0);
    }
    return *decoded;
}

[[noreturn]] void hang() {
    for (;;) {
        ::pause();
    }
}

/// With a descriptor along.
void sayWithDescriptor(const std::string& packet) {
    iovec part{const_cast<char*>(packet.data()), packet.size()};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    msghdr envelope{};
    envelope.msg_iov = &part;
    envelope.msg_iovlen = 1;
    envelope.msg_control = control;
    envelope.msg_controllen = sizeof control;
    cmsghdr* const head = CMSG_FIRSTHDR(&envelope);
    head->cmsg_level = SOL_SOCKET;
    head->cmsg_type = SCM_RIGHTS;
    head->cmsg_len = CMSG_LEN(sizeof(int));
    const int number = STDIN_FILENO;
    std::memcpy(CMSG_DATA(head), &number, sizeof number);
    ::sendmsg(socketDescriptor, &envelope, MSG_NOSIGNAL);
}

const std::map<std::string, std::function<void()>> ways{
    {"dies_at_once", [] {}},
    {"lacks_a_library", [] { std::_Exit(127); }},
    {"dies_when_asked", [] { request(); }},
    {"never_answers", [] { hang(); }},
    {"says_garbage",
     [] {
         request();
         say(std::string(answerLength, 'x'));
         hang();
     }},
    {"says_too_much",
     [] {
         say(encodeAnswer({.request = request()}) + "x");
         hang();
     }},
    {"says_too_little",
     [] {
         say(encodeAnswer({.request = request()}).substr(1));
         hang();
     }},
    {"answers_for_another_slot",
     [] {
         FrameRequest asked = request();
         asked.slot = 1 - asked.slot;
         say(encodeAnswer({.request = asked}));
         hang();
     }},
    {"answers_with_another_size",
     [] {
         FrameRequest asked = request();
         asked.size.width += 1;
         say(encodeAnswer({.request = asked}));
         hang();
     }},
    {"goes_back_in_time",
     [] {
         say(encodeAnswer({.request = request(), .time = std::chrono::seconds(1)}));
         say(encodeAnswer({.request = request()}));
         hang();
     }},
    {"answers_twice",
     [] {
         const std::string answer = encodeAnswer({.request = request()});
         say(answer);
         say(answer);
         hang();
     }},
    {"speaks_unasked",
     [] {
         say(encodeAnswer({.request = {.slot = 0, .size = {8, 8}}}));
         hang();
     }},
    {"sends_descriptors",
     [] {
         sayWithDescriptor(encodeAnswer({.request = request()}));
         hang();
     }},
};

}  // namespace

int main(int /*argumentCount*/, char** arguments) {
    const auto way = ways.find(std::filesystem::path(arguments[0]).filename());
    if (way != ways.end()) {
        way->second();
    }
    std::_Exit(0);
}
