#pragma once

#include <memory>
#include <string>
#include <vector>

#include "capture/capture_fixture.h"
#include "overlay/selection_overlay_manager.h"

/// The overlay over fakes, with the road behind it. One display of 1920 x 1080 points at first; the
/// application in front is the editor 42, and its window 4711 covers (100, 100, 400, 300) in
/// top-left space.
class OverlayFixture : public CaptureFixture {
  protected:
    OverlayFixture() {
        surfaces.recordInto(calls);
        keyboard.recordInto(calls);
        pointer.recordInto(calls);
        workspace.frontmost = overlay::Application{42, "Editor"};
        service.content->windows = {
            {4711, {{100, 100}, {400, 300}}, 0, capture::RunningApplication{"editor", 42}, nullptr},
            {4712, {{600, 100}, {400, 300}}, 0, capture::RunningApplication{"editor", 42}, nullptr},
        };
    }

    static base::Screen screen(base::DisplayID displayID, const base::Rect& frame,
                               double scale = 1.0, const std::string& colorSpace = {}) {
        return {displayID, frame, scale,
                colorSpace.empty() ? nullptr
                                   : std::make_shared<const base::ColorSpace>(base::ColorSpace{
                                         colorSpace, std::vector<std::uint8_t>{1}})};
    }
    /// Two displays: the second right of the primary, 56 points higher, at scale 2.
    void useTwoDisplays() {
        displays.list = {screen(1, {{0, 0}, {1920, 1080}}),
                         screen(2, {{1920, 56}, {1280, 1024}}, 2.0, "Display P3")};
    }
    /// Opens the overlay and empties the records.
    void open(base::CaptureMode mode = base::CaptureMode::screenshot) {
        manager.showSelection(mode);
        calls.clear();
        log.lines.clear();
        pointer.cursors.clear();
    }
    /// Opens the overlay in window mode, with the windows listed and the pointer at `place`.
    void openInWindowMode(base::Point place,
                          base::CaptureMode mode = base::CaptureMode::screenshot) {
        open(mode);
        pointer.place = place;
        manager.toggleWindowMode();
        while (service.answerContent()) {
        }
        queue.runAll();
        calls.clear();
        log.lines.clear();
        pointer.cursors.clear();
        service.contentRequests.clear();
    }
    /// The open surface over the display at `index`.
    doubles::SurfaceRecord& surface(std::size_t index = 0) {
        return *surfaces.openSurfaces().at(index);
    }
    const overlay::SelectionState& state(std::size_t index = 0) {
        return manager.windows().at(index)->contentView()->state();
    }
    static constexpr const char* closedLine = "log: 🎯 Cursor restored to arrow in close()";

    doubles::FakeWorkspace workspace;
    doubles::FakeDisplays displays;
    doubles::FakeOverlaySurfaceFactory surfaces;
    doubles::FakeKeyboardTap keyboard;
    doubles::FakePointer pointer;
    overlay::SelectionOverlayManager manager{{.workspace = workspace,
                                              .displays = displays,
                                              .surfaces = surfaces,
                                              .keyboardTap = keyboard,
                                              .pointer = pointer,
                                              .captureService = service,
                                              .screenCapture = screenCapture,
                                              .mainQueue = queue,
                                              .log = log}};
};
