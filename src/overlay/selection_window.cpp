#include "overlay/selection_window.h"

#include <utility>

#include "overlay/virtual_key_codes.h"

namespace overlay {

PanelConfiguration SelectionWindow::configuration() {
    constexpr std::uint32_t nonactivatingPanel = 0x80;
    constexpr std::uint32_t fullSizeContentView = 0x8000;
    constexpr std::uint32_t bufferedBacking = 2;
    constexpr int screenSaverLevel = 1000;
    constexpr std::uint32_t canJoinAllSpaces = 0x1;
    constexpr std::uint32_t ignoresCycle = 0x40;
    constexpr std::uint32_t fullScreenAuxiliary = 0x100;
    constexpr std::uint32_t mouseEnteredAndExited = 0x1;
    constexpr std::uint32_t mouseMoved = 0x2;
    constexpr std::uint32_t activeAlways = 0x80;
    constexpr std::uint32_t inVisibleRect = 0x200;
    return {
        .styleMask = nonactivatingPanel | fullSizeContentView,
        .backing = bufferedBacking,
        .isDeferred = false,
        .isOpaque = false,
        .level = screenSaverLevel,
        .ignoresMouseEvents = false,
        .collectionBehavior = canJoinAllSpaces | ignoresCycle | fullScreenAuxiliary,
        .hidesOnDeactivate = false,
        .isReleasedWhenClosed = false,
        .trackingAreaOptions = mouseEnteredAndExited | mouseMoved | activeAlways | inVisibleRect,
    };
}

SelectionWindow::SelectionWindow(OverlaySurfaceFactory& surfaces, const base::Screen& screen,
                                 std::shared_ptr<SelectionView> contentView,
                                 std::function<void()> closeOverlay)
    : closeOverlay_(std::move(closeOverlay)),
      surface_(surfaces.create(screen, configuration(), *this)) {
    setContentView(std::move(contentView));
}

SelectionWindow::~SelectionWindow() {
    setContentView(nullptr);
}

void SelectionWindow::setContentView(std::shared_ptr<SelectionView> contentView) {
    if (contentView_) {
        contentView_->setSurface(nullptr);
    }
    contentView_ = std::move(contentView);
    if (contentView_) {
        contentView_->setSurface(surface_.get());
    }
}

void SelectionWindow::makeKeyAndOrderFront() {
    surface_->makeKeyAndOrderFront();
}

void SelectionWindow::close() {
    surface_->close();
}

void SelectionWindow::mouseEntered() {
    if (contentView_) {
        contentView_->mouseEntered();
    }
}

void SelectionWindow::mouseExited() {}

void SelectionWindow::mouseMoved(const MouseEvent&) {
    if (contentView_) {
        contentView_->mouseMoved();
    }
}

void SelectionWindow::mouseDown(const MouseEvent& event) {
    if (contentView_) {
        contentView_->mouseDown(event);
    }
}

void SelectionWindow::mouseDragged(const MouseEvent& event) {
    if (contentView_) {
        contentView_->mouseDragged(event);
    }
}

void SelectionWindow::mouseUp(const MouseEvent&) {
    if (contentView_) {
        contentView_->mouseUp();
    }
}

KeyVerdict SelectionWindow::keyDown(std::uint32_t keyCode) {
    switch (keyCode) {
        case escapeKeyCode:
            cancelOperation();
            return KeyVerdict::handled;
        case spaceKeyCode:
            if (contentView_) {
                contentView_->toggleWindowMode();
            }
            return KeyVerdict::handled;
        default:
            return KeyVerdict::unhandled;
    }
}

void SelectionWindow::cancelOperation() {
    // Closing destroys this window, and with it the function that is being called.
    const auto closeOverlay = closeOverlay_;
    closeOverlay();
}

}  // namespace overlay
