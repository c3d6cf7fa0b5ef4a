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

/// The helper is started when the overlay opens, and nobody has dragged before this has gone. A
/// picture that comes earlier was waiting for the helper.
constexpr std::chrono::milliseconds soonestDrag{50};

enum ExitStatus { socketClosed = 0, couldNotStart = 2, badMessage = 3 };

base::Result<TextEngine> load(const std::string& languages, const LoadEngine& loadEngine) {
    if (auto status = helper::confineToReading(); !status) {
        return status.error();
    }
    std::vector<std::string> names;
    std::istringstream joined(languages);
    for (std::string name; std::getline(joined, name, '+');) {
        names.push_back(name);
    }
    auto engine = loadEngine(names);
    if (!engine) {
        return engine.error();
    }
    if (auto status = helper::confineToComputing(memoryGrowth); !status) {
        return status.error();
    }
    return engine;
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

void prepareForLongPages(const MessageChannel& channel, const TextEngine& engine) {
    if (!engine.prepare || channel.hasInput(soonestDrag)) {
        return;
    }
    try {
        engine.prepare();
    } catch (const std::exception&) {
        // It is tried again, and told, when there is such a page.
    }
}

int serve(MessageChannel& channel, const TextEngine& engine) {
    prepareForLongPages(channel, engine);
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
        const std::string reply = image ? answer(engine.read, message.header.serial, image.value())
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
    const auto engine = load(languages, loadEngine);
    if (!engine) {
        channel.send(encodeFailure(0, engine.error()), std::nullopt);
        return couldNotStart;
    }
    if (channel.send(encodeReady(), std::nullopt)) {
        return socketClosed;
    }
    return serve(channel, engine.value());
}

}  // namespace platform::tesseract
