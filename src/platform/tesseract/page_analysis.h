#pragma once

#include <memory>
#include <vector>

#include "base/image.h"
#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/line_metrics.h"
#include "platform/tesseract/reading_order.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// Where the text of a picture is: its lines in reading order, and what is needed to draw them.
/// The time it takes grows with the number of pixels, whatever they show.
class PageAnalysis {
  public:
    explicit PageAnalysis(const base::Image& image);

    /// None where there is no text.
    [[nodiscard]] const std::vector<TextLine>& lines() const { return lines_; }
    /// One for each line.
    [[nodiscard]] const std::vector<LineMetrics>& metrics() const { return metrics_; }
    /// How flat the ground of each line is, 0..1.
    [[nodiscard]] const std::vector<double>& grounds() const { return grounds_; }
    [[nodiscard]] const InkPlane& ink() const { return ink_; }
    /// Only where there are lines.
    [[nodiscard]] const ConnectedComponents& components() const { return *components_; }
    /// In pixels.
    [[nodiscard]] double letterHeight() const { return letterHeight_; }
    /// From character to character of each line, in pixels; 0 for proportional lines.
    [[nodiscard]] const std::vector<double>& pitches() const { return pitches_; }
    /// Of most of the page.
    [[nodiscard]] Typeface typeface() const {
        return pitch_ > 0 ? Typeface::monospaced : Typeface::proportional;
    }

  private:
    InkPlane ink_;
    std::unique_ptr<ConnectedComponents> components_;
    double letterHeight_ = 0;
    double pitch_ = 0;
    std::vector<TextLine> lines_;
    std::vector<LineMetrics> metrics_;
    std::vector<double> pitches_;
    std::vector<double> grounds_;
};

}  // namespace platform::tesseract
