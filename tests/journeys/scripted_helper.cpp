// Stands in for the recognition helper where a journey is about a text that no picture can be made
// to say: answers every picture with the one line that the file "<this program>.answer" holds, and
// leaves the picture itself in "<this program>.seen": width and height in a line, then its pixels,
// four bytes each.
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <variant>

#include "platform/tesseract/helper_command.h"
#include "platform/tesseract/message_channel.h"
#include "platform/tesseract/sealed_picture.h"

using namespace platform::tesseract;

namespace {

void keep(const Message& message, const std::string& fileName) {
    const auto shape = decodePicture(message.payload);
    if (!shape) {
        return;
    }
    const auto image = mapSealedPicture(message.descriptor, *shape);
    if (!image) {
        return;
    }
    std::ofstream file(fileName, std::ios::binary);
    file << shape->width << ' ' << shape->height << '\n';
    for (int y = 0; y < image.value().height(); ++y) {
        file.write(reinterpret_cast<const char*>(image.value().row(y)),
                   std::streamsize{image.value().width()} * 4);
    }
}

}  // namespace

int main(int, char** arguments) {
    const std::string answerFile = std::string(*arguments) + ".answer";
    MessageChannel channel(OwnedDescriptor(helperSocketDescriptor), Attachment::oneDescriptor);
    if (channel.send(encodeReady(), std::nullopt)) {
        return 1;
    }
    for (;;) {
        const auto received = channel.receive(std::nullopt);
        if (!std::holds_alternative<Message>(received)) {
            return 0;
        }
        keep(std::get<Message>(received), std::string(*arguments) + ".seen");
        std::ifstream file(answerFile);
        std::stringstream answer;
        answer << file.rdbuf();
        const auto serial = std::get<Message>(received).header.serial;
        if (channel.send(encodeObservations(serial, {{{answer.str()}}}), std::nullopt)) {
            return 1;
        }
    }
}
