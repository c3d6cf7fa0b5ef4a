#pragma once

#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// The colour that each pixel would have if nothing were written there.
///
/// Screens are made of surfaces: a block of 8x5 pixels whose neighbours hardly differ is wider than
/// a stroke of text and so belongs to one. Surfaces grow over equal neighbours, and every other
/// pixel takes the colour of the nearest surface (two passes of a distance transform, Rosenfeld and
/// Pfaltz, 1968). So dark, light, coloured and mixed pages look alike afterwards, and gradients are
/// followed.
class BackgroundModel {
  public:
    explicit BackgroundModel(const ColorPlane& page);

    [[nodiscard]] const ColorPlane& colors() const { return colors_; }
    [[nodiscard]] bool isSurface(int x, int y) const { return distances_.at(x, y) == 0; }
    /// Of a row: how far away the nearest surface is; 0 on one.
    [[nodiscard]] const std::uint16_t* distances(int y) const { return distances_.row(y); }
    [[nodiscard]] bool hasSurfaces() const { return hasSurfaces_; }

  private:
    void markFlatBlocks(const ColorPlane& page);
    static void findCorners(const ColorPlane& page, int first, int end, Mask& corners);
    void fillBlocks(const Mask& corners, int first, int end);
    void separateSurfaces(const ColorPlane& page);
    void dropSmallSurfaces();
    void takeSurfaces(const ColorPlane& page);
    void grow(const ColorPlane& page);
    void spread();
    void fillWithCommonestColor(const ColorPlane& page);

    Mask flat_;
    ColorPlane colors_;
    Plane<std::uint16_t> distances_;
    bool hasSurfaces_ = false;
};

}  // namespace platform::tesseract
