#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "overlay/overlay_surface.h"
#include "overlay/selection_view.h"

namespace overlay {

/// The window of the overlay over one display; passes its input to its content view. Main thread.
class SelectionWindow final : public SurfaceInput {
  public:
    /// How the window of every overlay is made: a borderless, transparent, non-activating panel at
    /// the level of the screen saver, on all spaces, that takes the mouse.
    static PanelConfiguration configuration();

    /// A window that covers `screen` with `contentView` in it; nothing is shown yet.
    SelectionWindow(OverlaySurfaceFactory& surfaces, const base::Screen& screen,
                    std::shared_ptr<SelectionView> contentView, std::function<void()> closeOverlay);
    ~SelectionWindow() override;
    SelectionWindow(const SelectionWindow&) = delete;
    SelectionWindow& operator=(const SelectionWindow&) = delete;

    /// Null when the window has no selection view.
    [[nodiscard]] SelectionView* contentView() const { return contentView_.get(); }
    void setContentView(std::shared_ptr<SelectionView> contentView);
    void makeKeyAndOrderFront();
    void close();

    void mouseEntered() override;
    void mouseExited() override;
    void mouseMoved(const MouseEvent& event) override;
    void mouseDown(const MouseEvent& event) override;
    void mouseDragged(const MouseEvent& event) override;
    void mouseUp(const MouseEvent& event) override;
    KeyVerdict keyDown(std::uint32_t keyCode) override;
    void cancelOperation() override;

  private:
    std::function<void()> closeOverlay_;
    std::shared_ptr<SelectionView> contentView_;
    std::unique_ptr<OverlaySurface> surface_;
};

}  // namespace overlay
