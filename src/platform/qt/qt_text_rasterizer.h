#pragma once

#include "platform/x11/text_rasterizer.h"

namespace platform::qt {

/// Text of the overlay in the user-interface font of the toolkit. Main thread, after the making of
/// the QGuiApplication.
class QtTextRasterizer final : public x11::TextRasterizer {
  public:
    [[nodiscard]] base::Size measure(const std::string& text, const overlay::Font& font) override;
    [[nodiscard]] x11::TextBitmap rasterize(const std::string& text, const overlay::Font& font,
                                            double scale) override;
};

}  // namespace platform::qt
