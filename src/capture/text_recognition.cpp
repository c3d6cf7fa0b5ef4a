#include "capture/text_recognition.h"

#include <cstddef>
#include <optional>
#include <vector>

#include "app/settings_keys.h"
#include "base/file_path.h"
#include "base/text.h"
#include "capture/text_file_name.h"

namespace capture {

namespace {

constexpr std::size_t charactersInNotification = 50;

/// The likeliest reading of each line; a line without one is passed over.
std::string textOf(const std::vector<TextObservation>& observations) {
    std::vector<std::string> lines;
    for (const TextObservation& observation : observations) {
        if (!observation.candidates.empty()) {
            lines.push_back(base::validUtf8(observation.candidates.front()));
        }
    }
    return base::joined(lines, "\n");
}

std::string notificationBody(const std::string& text) {
    const std::string start = base::firstCharacters(text, charactersInNotification);
    return start.size() < text.size() ? start + "..." : start;
}

}  // namespace

void TextRecognition::performOCR(const base::Image& image) {
    const auto observations = mediator_.recognizer.recognize(image);
    if (!observations) {
        if (observations.error().kind == base::ErrorKind::notFound) {
            return;
        }
        // The line ends the sentence itself.
        std::string reason = observations.error().sentence;
        if (reason.ends_with('.')) {
            reason.pop_back();
        }
        mediator_.log.line("Unable to perform OCR: " + reason + ".");
        return;
    }
    mediator_.mainQueue.post(
        alive_.guard([this, text = textOf(observations.value())] { handleOCRResult(text); }));
}

void TextRecognition::handleOCRResult(const std::string& text) {
    if (mediator_.settings.boolForKey(app::keys::copyOCRToClipboard)) {
        mediator_.pasteboard.clearContents();
        mediator_.pasteboard.writeString(text);
        mediator_.log.line("OCR complete! Text copied to clipboard.");
    }
    saveOCRText(text);
    if (mediator_.settings.boolForKey(app::keys::showNotifications)) {
        mediator_.confirmation.postNotification("Text Recognized",
                                                notificationBody(base::trimmed(text)));
    }
    if (mediator_.settings.boolForKey(app::keys::playSounds)) {
        mediator_.confirmation.playSound("Glass");
    }
}

void TextRecognition::saveOCRText(const std::string& text) {
    if (!mediator_.settings.boolForKey(app::keys::saveOCRToDownloads)) {
        return;
    }
    const std::string trimmed = base::trimmed(text);
    if (trimmed.empty()) {
        return;
    }
    const std::string fileName = textFileStem(trimmed, mediator_.clock.localTime()) + ".txt";
    std::string folder = mediator_.settings.stringForKey(app::keys::ocrSavePath).value_or("");
    if (folder.empty()) {
        // Unlike a picture, a text that has no folder to go to is passed over without a word: it
        // is on the pasteboard.
        const auto downloads = mediator_.fileManager.downloadsDirectories();
        if (downloads.empty()) {
            return;
        }
        folder = downloads.front();
    }
    const std::string target = base::appendingPathComponent(folder, fileName);
    const base::Status written = mediator_.fileManager.writeTextAtomically(target, text);
    if (written) {
        mediator_.log.line("OCR text saved to: " + target);
    } else {
        mediator_.log.line("Failed to save OCR text: " + written.error().sentence);
    }
}

}  // namespace capture
