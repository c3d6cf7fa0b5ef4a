// Stands in for the recognition helper and misbehaves in the way that the name says under which it
// is started. "..._once" behaves from the second start on.

#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <thread>

#include "platform/tesseract/helper_command.h"
#include "platform/tesseract/message_channel.h"

namespace {

using namespace platform::tesseract;

void say(const std::string& bytes) {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count =
            ::send(helperSocketDescriptor, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count < 0) {
            std::_Exit(9);
        }
        sent += static_cast<std::size_t>(count);
    }
}

[[noreturn]] void hang() {
    for (;;) {
        ::pause();
    }
}

std::string goodAnswer(std::uint32_t serial) {
    return encodeObservations(serial, {{{"good"}}});
}

/// A good answer whose payload is replaced, under a header of the right length.
std::string answerWith(std::uint32_t serial, const std::string& payload) {
    std::string message = goodAnswer(serial).substr(0, headerLength);
    const auto length = static_cast<std::uint32_t>(payload.size());
    message.replace(12, 4, reinterpret_cast<const char*>(&length), 4);
    return message + payload;
}

std::string bytesOf(std::uint32_t number) {
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

void drip(std::uint32_t serial) {
    for (const char byte : goodAnswer(serial)) {
        say(std::string(1, byte));
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
    }
    hang();
}

void talkForEver(std::uint32_t serial) {
    for (;;) {
        say(goodAnswer(serial + 1));
    }
}

using Behaviour = std::function<void(std::uint32_t serial)>;

/// What it does instead of answering a picture.
const std::map<std::string, Behaviour> behaviours{
    {"behaves", [](std::uint32_t serial) { say(goodAnswer(serial)); }},
    {"dies", [](std::uint32_t) { std::abort(); }},
    {"hangs", [](std::uint32_t) { hang(); }},
    {"drips", drip},
    {"never_stops", talkForEver},
    {"babbles", [](std::uint32_t) { say(std::string(1000, 'z')); }},
    {"answers_nothing", [](std::uint32_t serial) { say(answerWith(serial, "")); }},
    {"counts_wrong", [](std::uint32_t serial) { say(answerWith(serial, bytesOf(3))); }},
    {"claims_length",
     [](std::uint32_t serial) {
         say(answerWith(serial, bytesOf(1) + bytesOf(1) + bytesOf(~0U) + "x"));
     }},
    {"is_huge",
     [](std::uint32_t serial) {
         std::string header = goodAnswer(serial).substr(0, headerLength);
         say(header.replace(12, 4, bytesOf(~0U)));
         hang();
     }},
    {"sends_escapes",
     [](std::uint32_t serial) {
         say(answerWith(serial, bytesOf(1) + bytesOf(1) + bytesOf(4) + "\033[2J"));
     }},
    {"sends_bad_text",
     [](std::uint32_t serial) {
         say(answerWith(serial, bytesOf(1) + bytesOf(1) + bytesOf(2) + "\xff\xff"));
     }},
    {"answers_another", [](std::uint32_t serial) { say(goodAnswer(serial + 1)); }},
    {"is_ready_again", [](std::uint32_t) { say(encodeReady()); }},
    {"closes",
     [](std::uint32_t) {
         ::shutdown(helperSocketDescriptor, SHUT_RDWR);
         hang();
     }},
    {"fails",
     [](std::uint32_t serial) {
         say(encodeFailure(serial, {base::ErrorKind::failed, "It is too dark to read."}));
     }},
    // A kind of which the program would say nothing.
    {"fails_in_silence",
     [](std::uint32_t serial) {
         say(encodeFailure(serial, {base::ErrorKind::notFound, "Nothing is here."}));
     }},
    {"dies_afterwards",
     [](std::uint32_t serial) {
         say(goodAnswer(serial));
         std::_Exit(0);
     }},
    {"talks_afterwards",
     [](std::uint32_t serial) { say(goodAnswer(serial) + goodAnswer(serial + 1)); }},
};

/// What it does instead of getting ready.
const std::map<std::string, std::function<void()>> startBehaviours{
    {"dies_at_start", [] { std::_Exit(1); }},
    {"lacks_a_library", [] { std::_Exit(127); }},
    {"hangs_at_start", [] { hang(); }},
    {"babbles_at_start", [] { say(std::string(1000, 'z')); }},
    {"answers_at_start", [] { say(goodAnswer(0)); }},
    {"fails_at_start",
     [] {
         say(encodeFailure(0, {base::ErrorKind::unavailable, "There is no engine."}));
     }},
};

/// The behaviour for this start of the program at `path`.
std::string behaviourOf(const std::filesystem::path& path) {
    std::string name = path.filename();
    const std::string suffix = "_once";
    if (name.ends_with(suffix)) {
        const std::filesystem::path mark = path.string() + ".started";
        if (std::filesystem::exists(mark)) {
            return "behaves";
        }
        std::ofstream(mark) << "started";
        name.resize(name.size() - suffix.size());
    }
    return name;
}

}  // namespace

int main(int, char** arguments) {
    const std::string name = behaviourOf(arguments[0]);
    if (const auto behaviour = startBehaviours.find(name); behaviour != startBehaviours.end()) {
        behaviour->second();
        hang();
    }
    say(encodeReady());
    MessageChannel channel(OwnedDescriptor(::dup(helperSocketDescriptor)),
                           Attachment::oneDescriptor);
    for (;;) {
        const auto received = channel.receive(std::nullopt);
        if (!std::holds_alternative<Message>(received)) {
            return 0;
        }
        behaviours.at(name)(std::get<Message>(received).header.serial);
    }
}
