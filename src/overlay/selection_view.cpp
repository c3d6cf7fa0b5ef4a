#include "overlay/selection_view.h"

#include <string>
#include <utility>

#include "base/text.h"

namespace overlay {

namespace {

/// The scale of a view that is on no screen.
constexpr double fallbackScaleFactor = 2.0;

std::vector<WindowCandidate> candidates(const capture::ShareableContent& content) {
    std::vector<WindowCandidate> list;
    list.reserve(content.windows.size());
    for (const capture::ShareableWindow& window : content.windows) {
        list.push_back({.windowID = window.windowID,
                        .frame = window.frame,
                        .windowLayer = window.windowLayer,
                        .ownerPID = window.owningApplication
                                        ? std::optional(window.owningApplication->processID)
                                        : std::nullopt});
    }
    return list;
}

}  // namespace

SelectionView::SelectionView(Mediator mediator, base::CaptureMode mode, const Placement& placement)
    : mediator_(std::move(mediator)), placement_(placement) {
    state_.mode = mode;
}

void SelectionView::mouseEntered() {
    setCursorForMode();
}

void SelectionView::setCursorForMode() {
    const bool picksWindows = state_.isWindowMode && state_.mode == base::CaptureMode::screenshot;
    mediator_.pointer.setCursor(picksWindows ? Cursor::pointingHand : Cursor::crosshair);
}

void SelectionView::mouseDown(const MouseEvent& event) {
    mediator_.log.line("🖱️ SelectionView mouseDown at (" +
                       base::decimalText(event.location.x) + ", " +
                       base::decimalText(event.location.y) + ")");
    if (state_.isWindowMode) {
        return;
    }
    state_.press(event.location);
    setNeedsDisplay();
}

void SelectionView::mouseDragged(const MouseEvent& event) {
    if (state_.isWindowMode) {
        return;
    }
    state_.drag(event.location, (event.modifierFlags & optionModifierFlag) != 0
                                    ? OptionKey::held
                                    : OptionKey::released);
    setNeedsDisplay();
}

void SelectionView::mouseMoved() {
    if (!state_.isWindowMode) {
        return;
    }
    const std::optional<base::Point> location = mediator_.pointer.location();
    if (location && state_.updateHoveredWindow(*location) == Redraw::needed) {
        setNeedsDisplay();
    }
}

void SelectionView::mouseUp() {
    finishSelection();
    queueClose();
}

void SelectionView::finishSelection() {
    if (const auto windowID = state_.finishSelection()) {
        captureWindow(*windowID);
    } else {
        captureRegion();
    }
}

void SelectionView::captureRegion() {
    const std::optional<base::Rect> selection = state_.capturableRegion();
    if (selection && surface_ != nullptr) {
        mediator_.screenCapture.captureRegion({
            .screenRect = viewToScreen(*selection, placement_.displayFrame.origin),
            .selectionRect = *selection,
            .scaleFactor = scaleFactor(),
            .colorSpaceName = colorSpaceName(),
            .mode = state_.mode,
            .view = shared_from_this(),
        });
    }
    queueClose();
}

void SelectionView::captureWindow(capture::WindowID windowID) {
    mediator_.screenCapture.captureWindow({
        .windowID = windowID,
        .scaleFactor = scaleFactor(),
        .colorSpaceName = colorSpaceName(),
        .mode = state_.mode,
        .view = shared_from_this(),
    });
}

void SelectionView::queueClose() {
    mediator_.mainQueue.post(mediator_.closeOverlay);
}

void SelectionView::toggleWindowMode() {
    state_.toggleWindowMode();
    setCursorForMode();
    if (state_.isWindowMode) {
        loadAvailableWindows();
    }
    setNeedsDisplay();
}

void SelectionView::loadAvailableWindows() {
    mediator_.captureService.shareableContent(
        capture::DesktopWindows::excluded, capture::WindowVisibility::onScreenOnly,
        [weakView = weak_from_this()](const auto& content, const auto&) {
            const auto view = weakView.lock();
            if (!view || !content) {
                return;
            }
            view->mediator_.mainQueue.post([weakView, listed = *content] {
                if (const auto receiver = weakView.lock()) {
                    receiver->handleWindowList(listed);
                }
            });
        });
}

void SelectionView::handleWindowList(const capture::ShareableContent& content) {
    const Redraw redraw = state_.applyWindowList(candidates(content), mediator_.targetAppPID(),
                                                 mediator_.pointer.location());
    if (redraw == Redraw::needed) {
        setNeedsDisplay();
    }
}

void SelectionView::setNeedsDisplay() {
    if (surface_ == nullptr) {
        return;
    }
    SelectionDrawing drawing =
        drawSelection(state_, placement_.displayFrame, placement_.primaryHeight,
                      [this](const std::string& text, const Font& font) {
                          return surface_->measure(text, font);
                      });
    if (drawing.steps == presented_.steps) {
        return;
    }
    const base::Rect changed = changedRect(presented_, drawing, bounds());
    presented_ = std::move(drawing);
    surface_->present(presented_.steps, changed);
}

base::Rect SelectionView::bounds() const {
    return {{0, 0}, placement_.displayFrame.size};
}

double SelectionView::scaleFactor() const {
    const auto screen = surface_ != nullptr ? surface_->screen() : std::nullopt;
    return screen ? screen->backingScaleFactor : fallbackScaleFactor;
}

std::optional<std::string> SelectionView::colorSpaceName() const {
    const auto screen = surface_ != nullptr ? surface_->screen() : std::nullopt;
    if (!screen || !screen->colorSpace || screen->colorSpace->name.empty()) {
        return std::nullopt;
    }
    return screen->colorSpace->name;
}

}  // namespace overlay
