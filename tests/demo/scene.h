#pragma once

#include <memory>
#include <string>
#include <vector>

#include "desktop/desktop.h"

namespace demo {

/// What the demonstration's desktop shows: a background and two windows with text. Ends with it.
class Scene {
  public:
    /// Returns when both windows have painted their text.
    explicit Scene(desktop::Desktop& desktop);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// Clicks into the window "Notes" and waits until it is the active one.
    void activateNotes(desktop::Place placeInside);

  private:
    void paintBackground();
    xcb_window_t openText(const std::string& title, const std::string& geometry,
                          const std::string& colors, const std::string& text);

    desktop::Desktop& desktop_;
    std::vector<std::unique_ptr<desktop::Process>> programs_;
    xcb_window_t notes_ = XCB_WINDOW_NONE;
};

/// The managed window whose role contains `part`, XCB_WINDOW_NONE when there is none.
xcb_window_t windowWithRole(const desktop::XClient& client, const std::string& part);
/// Asks the window manager to close the window, as its close button does; returns when it is gone.
void closeWindow(const desktop::XClient& client, xcb_window_t window);
/// What the screen shows of the window, its decoration included.
desktop::Picture readWindow(const desktop::XClient& client, xcb_window_t window);
/// The same of the permissions window, while its film shows the end of the first drag. `scale` is
/// the pixels of a point.
desktop::Picture readWindowDuringDrag(const desktop::XClient& client, xcb_window_t window,
                                      int scale);
/// The screen when it has stopped changing: two readings, 100 ms apart, are the same.
desktop::Picture readSettledScreen(const desktop::XClient& client);

}  // namespace demo
