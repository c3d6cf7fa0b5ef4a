#include "platform/tesseract/text_helper_process.h"

#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/tesseract/helper_command.h"
#include "platform/tesseract/sealed_picture.h"

namespace platform::tesseract {

namespace {

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : "+") + name;
    }
    return text;
}

std::vector<std::string> environmentFor(const LanguageSelection& languages) {
    std::vector<std::string> environment = helper::plainEnvironment();
    environment.push_back(std::string(dataDirectoryVariable) + "=" + languages.directory);
    return environment;
}

base::Error failed(const std::string& sentence) {
    return {base::ErrorKind::failed, sentence};
}

}  // namespace

base::Result<std::unique_ptr<TextHelperProcess>> TextHelperProcess::start(
    const std::string& path, const LanguageSelection& languages) {
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return failed(std::string("The text recognition helper cannot be reached: ") +
                      std::strerror(errno) + ".");
    }
    OwnedDescriptor ours(ends[0]);
    const OwnedDescriptor theirs(ends[1]);
    auto child = helper::ChildProcess::start({.path = path,
                                              .arguments = {joined(languages.languages)},
                                              .environment = environmentFor(languages),
                                              .descriptors = {theirs.number()}});
    if (!child) {
        return child.error();
    }
    return std::unique_ptr<TextHelperProcess>(
        new TextHelperProcess(std::move(child.value()), std::move(ours), languages));
}

TextHelperProcess::TextHelperProcess(std::unique_ptr<helper::ChildProcess> child,
                                     OwnedDescriptor socket, LanguageSelection languages)
    : child_(std::move(child)),
      channel_(std::move(socket), Attachment::none),
      languages_(std::move(languages)) {}

base::Error TextHelperProcess::explain(ChannelFailure failure) {
    const std::optional<int> status = child_->killAndReap();
    switch (failure) {
        case ChannelFailure::timedOut:
            return failed("The text recognition helper did not answer in time.");
        case ChannelFailure::nonsense:
            return failed("The text recognition helper gave an answer that makes no sense.");
        case ChannelFailure::closed:
            break;
    }
    if (helper::saysMissingLibrary(status)) {
        return {base::ErrorKind::unavailable,
                "The text recognition engine is missing; please install the package "
                "libtesseract5."};
    }
    return failed("The text recognition helper has ended unexpectedly.");
}

base::Result<Message> TextHelperProcess::receive(std::uint32_t serial, const Deadline& deadline) {
    auto received = channel_.receive(deadline);
    if (const auto* failure = std::get_if<ChannelFailure>(&received)) {
        return explain(*failure);
    }
    auto& message = std::get<Message>(received);
    if (message.header.serial != serial) {
        return explain(ChannelFailure::nonsense);
    }
    if (message.header.type == MessageType::failure) {
        auto error = decodeFailure(message.payload);
        return error ? *error : explain(ChannelFailure::nonsense);
    }
    return std::move(message);
}

base::Status TextHelperProcess::waitUntilReady(const Deadline& deadline) {
    if (isReady_) {
        return base::Nothing{};
    }
    const auto message = receive(0, deadline);
    if (!message) {
        return message.error();
    }
    if (message.value().header.type != MessageType::ready || !message.value().payload.empty()) {
        return explain(ChannelFailure::nonsense);
    }
    isReady_ = true;
    return base::Nothing{};
}

base::Result<std::vector<capture::TextObservation>> TextHelperProcess::read(
    const base::Image& image, const Deadline& deadline) {
    const auto picture = makeSealedPicture(image);
    if (!picture) {
        return picture.error();
    }
    const std::uint32_t serial = ++lastSerial_;
    if (const auto failure = channel_.send(encodePicture(serial, sealedShapeOf(image)), deadline,
                                           picture.value().number())) {
        return explain(*failure);
    }
    const auto message = receive(serial, deadline);
    if (!message) {
        return message.error();
    }
    auto observations = decodeObservations(message.value().payload);
    if (message.value().header.type != MessageType::observations || !observations) {
        return explain(ChannelFailure::nonsense);
    }
    return std::move(*observations);
}

bool TextHelperProcess::isSpoilt() const {
    if (endDescriptor() >= 0) {
        pollfd watched{endDescriptor(), POLLIN, 0};
        if (::poll(&watched, 1, 0) != 0) {
            return true;
        }
    }
    return isReady_ && channel_.hasInput();
}

}  // namespace platform::tesseract
