#pragma once

#include <vector>

#include "platform/tesseract/background_model.h"
#include "platform/tesseract/box_index.h"
#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// Median height of what may be a letter, near the x-height, in pixels; 0 without any.
double commonLetterHeight(const ConnectedComponents& components);

/// The height of capitals and ascenders, in pixels.
double commonCapitalHeight(const ConnectedComponents& components);

/// Tells letters from rules, frames, icons and blobs by geometry (after the size, density and
/// elongation tests of Fletcher and Kasturi, 1988), in units of the page's commonest letter height,
/// and from photographs by their edges: letters are drawn sharp.
class GlyphFilter {
  public:
    GlyphFilter(const ColorPlane& page, const InkPlane& ink, const Mask& mask,
                const ConnectedComponents& components, const BackgroundModel& background);

    /// The components that may be text.
    [[nodiscard]] std::vector<Glyph> glyphs() const;
    /// Median height of what may be a letter, near the x-height; 0 on a page without any.
    [[nodiscard]] double letterHeight() const { return letterHeight_; }

  private:
    [[nodiscard]] bool isGlyph(const Component& component) const;
    [[nodiscard]] bool isRule(const Component& component) const;
    [[nodiscard]] bool isTooLarge(const Component& component) const;
    /// Whether letters of its own size stand beside it.
    [[nodiscard]] bool isInHeading(const Component& component) const;
    [[nodiscard]] bool isFrame(const Component& component) const;
    [[nodiscard]] bool isBlob(const Component& component) const;
    [[nodiscard]] bool holdsOthers(const Component& component) const;
    [[nodiscard]] bool isEdgeOfSurfaces(const Component& component) const;

    [[nodiscard]] bool isBlurred(const Component& component) const;

    const InkPlane& ink_;
    const Mask& mask_;
    const ConnectedComponents& components_;
    const BackgroundModel& background_;
    /// Of the components, under their indices.
    BoxIndex places_;
    double letterHeight_ = 0;
    int letterCount_ = 0;
};

}  // namespace platform::tesseract
