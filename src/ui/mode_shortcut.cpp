#include "ui/mode_shortcut.h"

#include <utility>

#include "shortcuts/hot_key_service.h"

namespace ui {

namespace {

// The keys "1" and "2" of the main row.
constexpr std::int64_t screenshotDefaultKeyCode = 18;
constexpr std::int64_t ocrDefaultKeyCode = 19;
constexpr std::int64_t defaultModifiers = shortcuts::commandModifier | shortcuts::shiftModifier;

}  // namespace

std::int64_t ModeShortcut::keyCode() const {
    return mode_ == base::CaptureMode::ocr ? manager_.ocrKeyCode() : manager_.screenshotKeyCode();
}

std::int64_t ModeShortcut::modifiers() const {
    return mode_ == base::CaptureMode::ocr ? manager_.ocrModifiers()
                                           : manager_.screenshotModifiers();
}

void ModeShortcut::setKeyCode(std::int64_t keyCode) const {
    switch (mode_) {
        case base::CaptureMode::screenshot:
            manager_.setScreenshotKeyCode(keyCode);
            return;
        case base::CaptureMode::ocr:
            manager_.setOcrKeyCode(keyCode);
            return;
    }
}

void ModeShortcut::setModifiers(std::int64_t modifiers) const {
    switch (mode_) {
        case base::CaptureMode::screenshot:
            manager_.setScreenshotModifiers(modifiers);
            return;
        case base::CaptureMode::ocr:
            manager_.setOcrModifiers(modifiers);
            return;
    }
}

bool ModeShortcut::isDefault() const {
    return keyCode() == defaultKeyCode() && modifiers() == defaultModifiers;
}

void ModeShortcut::reset() const {
    setKeyCode(defaultKeyCode());
    setModifiers(defaultModifiers);
}

app::NotificationCenter::Observation ModeShortcut::observeChanges(
    std::function<void()> observer) const {
    return manager_.observeChanges(std::move(observer));
}

std::int64_t ModeShortcut::defaultKeyCode() const {
    return mode_ == base::CaptureMode::ocr ? ocrDefaultKeyCode : screenshotDefaultKeyCode;
}

}  // namespace ui
