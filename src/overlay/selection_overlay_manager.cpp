#include "overlay/selection_overlay_manager.h"

#include <string>
#include <utility>

#include "overlay/virtual_key_codes.h"

namespace overlay {

namespace {

std::optional<SelectionOverlayManager::Mediator>& sharedMediator() {
    static std::optional<SelectionOverlayManager::Mediator> mediator;
    return mediator;
}

}  // namespace

void SelectionOverlayManager::provideShared(const Mediator& mediator) {
    sharedMediator().emplace(mediator);
}

SelectionOverlayManager& SelectionOverlayManager::shared() {
    // Never destroyed: the ports that it refers to may be gone when static objects are.
    static auto* const instance = [] {
        if (!sharedMediator()) {
            base::fatalError("The overlay manager was asked for before the program was composed.");
        }
        return new SelectionOverlayManager(*sharedMediator());
    }();
    return *instance;
}

void SelectionOverlayManager::showSelection(base::CaptureMode mode) {
    recordFrontmostApplication();
    currentMode_ = mode;
    close();
    const std::vector<base::Screen> screens = mediator_.displays.screens();
    mediator_.displays.setChangeHandler(alive_.guard([this] { close(); }));
    for (const base::Screen& screen : screens) {
        openWindow(screen, screens.front().frame.size.height);
    }
    mediator_.pointer.setCursor(Cursor::crosshair);
    mediator_.log.line("🎯 Cursor set to crosshair in showSelection()");
    setupEventTap();
}

void SelectionOverlayManager::recordFrontmostApplication() {
    const std::optional<Application> application = mediator_.workspace.frontmostApplication();
    if (!application) {
        return;
    }
    targetAppPID_ = application->processIdentifier;
    mediator_.log.line("🟢 Target App: " + application->localizedName.value_or("Unknown") +
                       " (PID: " + std::to_string(application->processIdentifier) + ")");
}

void SelectionOverlayManager::openWindow(const base::Screen& screen, double primaryHeight) {
    SelectionView::Mediator view{
        .pointer = mediator_.pointer,
        .captureService = mediator_.captureService,
        .screenCapture = mediator_.screenCapture,
        .mainQueue = mediator_.mainQueue,
        .log = mediator_.log,
        .closeOverlay = alive_.guard([this] { close(); }),
        .targetAppPID = [this] { return targetAppPID_; },
    };
    auto window = std::make_unique<SelectionWindow>(
        mediator_.surfaces, screen,
        std::make_shared<SelectionView>(
            std::move(view), currentMode_,
            SelectionView::Placement{.displayFrame = screen.frame, .primaryHeight = primaryHeight}),
        alive_.guard([this] { close(); }));
    window->makeKeyAndOrderFront();
    windows_.push_back(std::move(window));
}

void SelectionOverlayManager::close() {
    removeEventTap();
    mediator_.displays.setChangeHandler({});
    for (const auto& window : windows_) {
        window->close();
    }
    // Freed after the list is empty: whoever asks during that finds a closed overlay.
    std::exchange(windows_, {}).clear();
    mediator_.pointer.setCursor(Cursor::arrow);
    mediator_.log.line("🎯 Cursor restored to arrow in close()");
}

void SelectionOverlayManager::toggleWindowMode() {
    mediator_.log.line("🔵 toggleWindowMode() called");
    for (const auto& window : windows_) {
        if (SelectionView* view = window->contentView()) {
            view->toggleWindowMode();
        }
    }
}

void SelectionOverlayManager::setupEventTap() {
    auto tap = mediator_.keyboardTap.create(
        [this](const TapEvent& event) { return handleTapEvent(event); });
    if (!tap) {
        mediator_.log.line(
            "Failed to create event tap. Ensure Accessibility permissions are granted.");
        return;
    }
    eventTap_ = std::move(tap.value());
}

void SelectionOverlayManager::removeEventTap() {
    eventTap_.reset();
}

TapVerdict SelectionOverlayManager::handleTapEvent(const TapEvent& event) {
    switch (event.type) {
        case TapEventType::tapDisabled:
            // A tap that the system has switched off stays off until the overlay opens again.
            return TapVerdict::pass;
        case TapEventType::keyDown:
            break;
    }
    // Never from inside the tap: the verdict goes back first, then the overlay changes.
    if (event.keyCode == spaceKeyCode) {
        mediator_.mainQueue.post(alive_.guard([this] { toggleWindowMode(); }));
    } else if (event.keyCode == escapeKeyCode) {
        mediator_.mainQueue.post(alive_.guard([this] { close(); }));
    }
    // Every other key is swallowed as well, for as long as the overlay is up.
    return TapVerdict::swallow;
}

}  // namespace overlay
