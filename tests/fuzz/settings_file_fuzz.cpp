// Any bytes as the settings file, and a String that a user chose.

#include "fuzz_input.h"
#include "platform/freedesktop/settings_document.h"

using platform::freedesktop::SettingsDocument;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(fuzz::Input(data, size).text());
    auto document = SettingsDocument::parse(text);
    if (!document) {
        document = SettingsDocument();
    }
    const auto before = *document;
    const std::string chosen = text.substr(0, 64);
    if (document->set("screenshotSavePath", chosen)) {
        fuzz::require(document->value("screenshotSavePath") == app::SettingsValue(chosen),
                      "what is set is read");
    } else {
        fuzz::require(document->text() == before.text(), "what is refused changes nothing");
    }
    const auto again = SettingsDocument::parse(document->text());
    fuzz::require(again.has_value(), "what is written can be read");
    fuzz::require(again->text() == document->text(), "reading and writing changes nothing");
    fuzz::require(again->keysThatDifferFrom(*document).empty(), "no value changes on the way");
    for (const std::string& key : document->keysThatDifferFrom(SettingsDocument())) {
        fuzz::require(again->value(key) == document->value(key), "each value is the same");
    }
    for (const std::string& key : before.keysThatDifferFrom(*document)) {
        fuzz::require(key == "screenshotSavePath", "no other key changes");
    }
    return 0;
}
