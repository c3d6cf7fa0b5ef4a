#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "overlay/overlay_surface.h"

namespace platform::macos {

/// A non-activating panel over one display, at the level of the screen saver.
class PanelOverlaySurface final : public overlay::OverlaySurface {
  public:
    // Main thread, as every method here and the calls of the input.
    /// `input` outlives the object.
    PanelOverlaySurface(const base::Screen& screen,
                        const overlay::PanelConfiguration& configuration,
                        overlay::SurfaceInput& input);
    ~PanelOverlaySurface() override;
    PanelOverlaySurface(const PanelOverlaySurface&) = delete;
    PanelOverlaySurface& operator=(const PanelOverlaySurface&) = delete;

    void makeKeyAndOrderFront() override;
    void close() override;
    [[nodiscard]] base::Size measure(const std::string& text, const overlay::Font& font) override;
    void present(const std::vector<overlay::DrawingStep>& steps,
                 const base::Rect& changed) override;
    [[nodiscard]] std::optional<base::Screen> screen() const override;

  private:
    struct Window;
    std::unique_ptr<Window> window_;
};

class PanelOverlaySurfaceFactory final : public overlay::OverlaySurfaceFactory {
  public:
    // Main thread.
    std::unique_ptr<overlay::OverlaySurface> create(
        const base::Screen& screen, const overlay::PanelConfiguration& configuration,
        overlay::SurfaceInput& input) override;
};

}  // namespace platform::macos
