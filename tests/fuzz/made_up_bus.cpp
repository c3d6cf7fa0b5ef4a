#include "made_up_bus.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

namespace fuzz {

namespace {

constexpr const char* busName = "org.freedesktop.DBus";
/// Beside other work, too: all of them together.
constexpr int patienceMilliseconds = 2000;
constexpr int mostSilences = 15;

void writeAll(int socket, const void* bytes, std::size_t size) {
    const char* rest = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t count = ::send(socket, rest, size, MSG_NOSIGNAL);
        require(count > 0, "the program stays on the bus");
        rest += count;
        size -= static_cast<std::size_t>(count);
    }
}

Message replyOf(std::string signature, BodyWriter body) {
    return {.type = MessageType::reply, .signature = std::move(signature), .body = body.take()};
}

}  // namespace

MadeUpBus::MadeUpBus()
    : listener_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)), end_(::eventfd(0, EFD_CLOEXEC)) {
    // Without a file: the name begins with a zero.
    const std::string name = "lumaframe-fuzz-" + std::to_string(::getpid());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + 1, name.data(), name.size());
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    require(::bind(listener_, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                ::listen(listener_, 1) == 0,
            "there is a place for the bus");
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:abstract=" + name).c_str(), 1);
    thread_ = std::thread([this] { serve(); });
}

MadeUpBus::~MadeUpBus() {
    takeOver();
    for (const int descriptor : {listener_, program_, end_}) {
        ::close(descriptor);
    }
}

void MadeUpBus::takeOver() {
    if (thread_.joinable()) {
        ::eventfd_write(end_, 1);
        thread_.join();
    }
}

void MadeUpBus::greet() {
    program_ = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    std::string line;
    while (line != "BEGIN") {
        line.clear();
        for (char letter = 0; !line.ends_with("\r\n");) {
            require(::read(program_, &letter, 1) == 1, "the program greets the bus");
            if (letter != 0) {
                line += letter;
            }
        }
        line.resize(line.size() - 2);
        const std::string answer = line.starts_with("AUTH EXTERNAL") ? "OK " + std::string(32, '1')
                                   : line == "NEGOTIATE_UNIX_FD"     ? "ERROR"
                                   : line == "BEGIN"                 ? ""
                                                                     : "REJECTED EXTERNAL";
        if (!answer.empty()) {
            writeAll(program_, (answer + "\r\n").data(), answer.size() + 2);
        }
    }
}

void MadeUpBus::serve() {
    greet();
    std::array<pollfd, 2> waiting{pollfd{program_, POLLIN, 0}, pollfd{end_, POLLIN, 0}};
    while (::poll(waiting.data(), waiting.size(), -1) > 0 && waiting[1].revents == 0) {
        receive(0);
        while (const auto message = takeMessage(received_)) {
            if (message->type == MessageType::call && message->wantsReply) {
                send(answerTo(*message));
            }
        }
        flush();
    }
}

Message MadeUpBus::answerTo(const Message& call) {
    const bool isForBus = call.interface == busName;
    BodyWriter body;
    Message answer;
    if (isForBus && call.member == "Hello") {
        body.text(":1.1");
        answer = replyOf("s", std::move(body));
    } else if (isForBus && call.member == "RequestName") {
        constexpr std::uint32_t isOwner = 1;
        body.number(isOwner, 4);
        answer = replyOf("u", std::move(body));
    } else if (isForBus && call.member == "NameHasOwner") {
        body.number(0, 4);
        answer = replyOf("b", std::move(body));
    } else if (isForBus && (call.member == "AddMatch" || call.member == "RemoveMatch")) {
        answer = replyOf("", {});
    } else {
        body.text("Nobody is there.");
        answer = replyOf("s", std::move(body));
        answer.type = MessageType::error;
        answer.errorName = "org.freedesktop.DBus.Error.NameHasNoOwner";
    }
    answer.sender = busName;
    answer.replySerial = call.serial;
    answer.wantsReply = false;
    return answer;
}

std::uint32_t MadeUpBus::send(Message message) {
    message.serial = ++serial_;
    const auto bytes = bytesOf(message);
    outgoing_.insert(outgoing_.end(), bytes.begin(), bytes.end());
    return message.serial;
}

void MadeUpBus::flush() {
    writeAll(program_, outgoing_.data(), outgoing_.size());
    outgoing_.clear();
}

bool MadeUpBus::receive(int patience) {
    pollfd waiting{program_, POLLIN, 0};
    if (::poll(&waiting, 1, patience) <= 0) {
        return false;
    }
    std::array<std::uint8_t, 65536> buffer;
    const ssize_t size = ::recv(program_, buffer.data(), buffer.size(), 0);
    require(size > 0, "the program stays on the bus");
    received_.insert(received_.end(), buffer.begin(), buffer.begin() + size);
    return true;
}

std::vector<Message> MadeUpBus::exchange() {
    std::vector<Message> messages;
    // An answer may overtake what the program's main thread has handed over to the one that sends,
    // but not by a whole turn.
    askAndCollect(messages);
    askAndCollect(messages);
    return messages;
}

std::uint32_t MadeUpBus::ask() {
    const std::uint32_t question = send({.path = "/",
                                         .interface = "org.freedesktop.DBus.Peer",
                                         .member = "Ping",
                                         .sender = busName});
    flush();
    return question;
}

void MadeUpBus::askAndCollect(std::vector<Message>& messages) {
    const std::uint32_t question = ask();
    for (int silences = 0;;) {
        while (auto message = takeMessage(received_)) {
            if (message->replySerial == question) {
                return;
            }
            messages.push_back(std::move(*message));
        }
        if (!receive(patienceMilliseconds)) {
            // Once in some ten thousand exchanges the toolkit overlooks what has come until more
            // comes.
            require(++silences <= mostSilences, "the program answers");
            ask();
        }
    }
}

}  // namespace fuzz
