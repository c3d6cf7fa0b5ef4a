#include "platform/x11/content_list.h"

#include <unistd.h>

#include <memory>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "platform/x11/capture_backing.h"
#include "platform/x11/window_list.h"

namespace platform::x11 {

namespace {

using Backings = std::shared_ptr<const std::vector<DisplayBacking>>;

Backings backingsOf(const OverlayStage& stage, const DisplayLayout& layout) {
    auto backings = std::make_shared<std::vector<DisplayBacking>>();
    for (const NativeDisplay& display : layout.displays()) {
        backings->push_back({display, stage.snapshotInUse(display.native)});
    }
    return backings;
}

std::optional<capture::RunningApplication> applicationOf(const ListedWindow& window) {
    if (window.kind == WindowKind::overlay) {
        return capture::RunningApplication{applicationIdentifier,
                                           static_cast<std::int32_t>(getpid())};
    }
    if (!window.owner.processID) {
        return std::nullopt;
    }
    return capture::RunningApplication{window.owner.applicationID, *window.owner.processID};
}

bool isWanted(const ListedWindow& window, capture::DesktopWindows desktopWindows,
              capture::WindowVisibility visibility) {
    if (desktopWindows == capture::DesktopWindows::excluded && window.kind == WindowKind::desktop) {
        return false;
    }
    return visibility == capture::WindowVisibility::all ||
           window.presence == WindowPresence::onScreen;
}

}  // namespace

capture::ShareableContent listContent(Connection& connection, const OverlayStage& stage,
                                      const DisplayLayout& layout,
                                      capture::DesktopWindows desktopWindows,
                                      capture::WindowVisibility visibility) {
    capture::ShareableContent content;
    const Backings backings = backingsOf(stage, layout);
    for (const DisplayBacking& backing : *backings) {
        content.displays.push_back({backing.display.id, layout.screenFrame(backing.display),
                                    backing.display.scale,
                                    std::shared_ptr<const void>(backings, &backing)});
    }
    std::vector<NativeRect> inFront;
    for (ListedWindow& window : listWindows(connection)) {
        if (stage.holds(window.id)) {
            window.kind = WindowKind::overlay;
        }
        const auto coveredBy = inFront;
        if (window.presence == WindowPresence::onScreen && window.kind != WindowKind::overlay) {
            inFront.push_back(window.frame.visible);
        }
        if (!isWanted(window, desktopWindows, visibility)) {
            continue;
        }
        auto backing = std::make_shared<const WindowBacking>(
            WindowBacking{window, coveredBy, stage.keptWindows(), backings});
        content.windows.push_back({window.id, layout.topLeftFromNative(window.frame.visible),
                                   layerOf(window.kind), applicationOf(window),
                                   std::move(backing)});
    }
    return content;
}

}  // namespace platform::x11
