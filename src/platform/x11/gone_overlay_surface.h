#pragma once

#include "overlay/overlay_surface.h"
#include "platform/text_rasterizer.h"

namespace platform::x11 {

/// A surface without a display: it went before the surface was made, or it cannot show one. Main
/// thread; `rasterizer` outlives it.
class GoneOverlaySurface final : public overlay::OverlaySurface {
  public:
    explicit GoneOverlaySurface(TextRasterizer& rasterizer) : rasterizer_(rasterizer) {}
    void makeKeyAndOrderFront() override {}
    void close() override {}
    base::Size measure(const std::string& text, const overlay::Font& font) override {
        return rasterizer_.measure(text, font);
    }
    void present(const std::vector<overlay::DrawingStep>& /*steps*/,
                 const base::Rect& /*changed*/) override {}
    [[nodiscard]] std::optional<base::Screen> screen() const override { return std::nullopt; }

  private:
    TextRasterizer& rasterizer_;
};

/// The overlay of a server that cannot blend: nothing is shown. Main thread; `rasterizer` outlives
/// it.
class GoneOverlaySurfaceFactory final : public overlay::OverlaySurfaceFactory {
  public:
    explicit GoneOverlaySurfaceFactory(TextRasterizer& rasterizer) : rasterizer_(rasterizer) {}
    std::unique_ptr<overlay::OverlaySurface> create(
        const base::Screen& /*screen*/, const overlay::PanelConfiguration& /*configuration*/,
        overlay::SurfaceInput& /*input*/) override {
        return std::make_unique<GoneOverlaySurface>(rasterizer_);
    }

  private:
    TextRasterizer& rasterizer_;
};

}  // namespace platform::x11
