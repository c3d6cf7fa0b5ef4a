#pragma once

#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/line_metrics.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// How a line is drawn for the engine.
struct LinePictureStyle {
    /// In pixels; the engine's model was trained on lines of 36.
    int height = 36;
    /// Width beside height: a little narrower costs less and reads as well.
    double narrowing = 0.9;
    /// Empty rows above and below, as a share of the line's own height.
    double margin = 0.25;
};

/// Draws lines of text for the engine: only the line's own glyphs, dark on white, contrast
/// stretched word by word, wide gaps shortened, all lines of a page at one size.
class LinePainter {
  public:
    /// `ink` must outlive this; `letterHeight` in pixels.
    LinePainter(const InkPlane& ink, const ConnectedComponents& components, double letterHeight);

    /// Dark on white.
    [[nodiscard]] InkPlane paint(const TextLine& line, const LineMetrics& metrics,
                                 const LinePictureStyle& style) const;

  private:
    /// The line in the page's pixels, 255 for the strongest ink.
    [[nodiscard]] InkPlane compose(const TextLine& line, int top, int height) const;
    void draw(const Segment& segment, int top, int left, InkPlane& picture) const;
    void stretchWords(InkPlane& picture) const;

    const InkPlane& ink_;
    double letterHeight_;
    /// The component of each ink pixel counted from 1; 0 for none.
    Plane<std::uint32_t> owners_;
};

}  // namespace platform::tesseract
