#include <cstdlib>
#include <memory>
#include <string>

#include "platform/tesseract/screen_text_reader.h"
#include "platform/tesseract/text_helper.h"

namespace {

using platform::tesseract::ScreenTextReader;
using platform::tesseract::TextEngine;

base::Result<TextEngine> loadReader(const std::vector<std::string>& languages) {
    auto reader = ScreenTextReader::create(languages);
    if (!reader) {
        return reader.error();
    }
    // Shared, since a function object has to be copyable.
    const std::shared_ptr<ScreenTextReader> shared = std::move(reader.value());
    return TextEngine{[shared](const base::Image& image) { return shared->read(image); },
                      [shared] { shared->prepare(); }};
}

}  // namespace

/// Started by Lumaframe alone: there is nothing here for a person to run.
int main(int argumentCount, char** arguments) {
    const std::string languages = argumentCount == 2 ? arguments[1] : "eng";
    // Without the destructors: the memory goes with the process, and the engine's end takes longer.
    std::_Exit(platform::tesseract::runTextHelper(languages, loadReader));
}
