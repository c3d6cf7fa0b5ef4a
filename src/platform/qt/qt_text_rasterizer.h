#pragma once

#include "platform/text_rasterizer.h"

namespace platform::qt {

/// Text of the overlay in the user-interface font of the toolkit. Main thread, after the making of
/// the QGuiApplication.
class QtTextRasterizer final : public TextRasterizer {
  public:
    [[nodiscard]] base::Size measure(const std::string& text, const overlay::Font& font) override;
    [[nodiscard]] TextBitmap rasterize(const std::string& text, const overlay::Font& font,
                                       double scale) override;
};

}  // namespace platform::qt
