#include "platform/tesseract/text_helper.h"

#include <malloc.h>

#include <exception>
#include <new>
#include <sstream>
#include <utility>

#include "platform/helper/confinement.h"
#include "platform/tesseract/helper_command.h"
#include "platform/tesseract/message_channel.h"
#include "platform/tesseract/sealed_picture.h"

namespace platform::tesseract {

namespace {

/// The largest picture that is accepted was seen to need 1 GiB beside its own pixels; more than
/// this is a fault, and ends this process instead of filling the machine.
constexpr unsigned long long memoryGrowth = 3ULL << 30U;

enum ExitStatus { socketClosed = 0, couldNotStart = 2, badMessage = 3 };

base::Result<ReadText> load(const std::string& languages, const LoadEngine& loadEngine) {
    if (auto status = helper::confineToReading(); !status) {
        return status.error();
    }
    std::vector<std::string> names;
    std::istringstream joined(languages);
    for (std::string name; std::getline(joined, name, '+');) {
        names.push_back(name);
    }
    auto readText = loadEngine(names);
    if (!readText) {
        return readText.error();
    }
    if (auto status = helper::confineToComputing(memoryGrowth); !status) {
        return status.error();
    }
    return readText;
}

/// The engine may throw when the memory limit is reached; nobody above could use more than a
/// sentence.
std::string answer(const ReadText& readText, std::uint32_t serial, const base::Image& image) {
    try {
        const auto observations = readText(image);
        return observations ? encodeObservations(serial, observations.value())
                            : encodeFailure(serial, observations.error());
    } catch (const std::bad_alloc&) {
        return encodeFailure(serial, {base::ErrorKind::failed,
                                      "The text recognition needs more memory than it may have."});
    } catch (const std::exception& exception) {
        return encodeFailure(serial, {base::ErrorKind::failed, exception.what()});
    }
}

int serve(MessageChannel& channel, const ReadText& readText) {
    for (;;) {
        auto received = channel.receive(std::nullopt);
        if (const auto* failure = std::get_if<ChannelFailure>(&received)) {
            return *failure == ChannelFailure::closed ? socketClosed : badMessage;
        }
        const auto& message = std::get<Message>(received);
        const auto shape = decodePicture(message.payload);
        if (message.header.type != MessageType::picture || !shape || !message.descriptor.isOpen()) {
            return badMessage;
        }
        const auto image = mapSealedPicture(message.descriptor, *shape);
        const std::string reply = image ? answer(readText, message.header.serial, image.value())
                                        : encodeFailure(message.header.serial, image.error());
        if (channel.send(reply, std::nullopt)) {
            return socketClosed;
        }
        // Waiting may take a minute; what the recognition has freed is no use until then.
        ::malloc_trim(0);
    }
}

}  // namespace

int runTextHelper(const std::string& languages, const LoadEngine& loadEngine) {
    MessageChannel channel(OwnedDescriptor(helperSocketDescriptor), Attachment::oneDescriptor);
    const auto readText = load(languages, loadEngine);
    if (!readText) {
        channel.send(encodeFailure(0, readText.error()), std::nullopt);
        return couldNotStart;
    }
    if (channel.send(encodeReady(), std::nullopt)) {
        return socketClosed;
    }
    return serve(channel, readText.value());
}

}  // namespace platform::tesseract
