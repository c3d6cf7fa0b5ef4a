#pragma once

#include <cstddef>
#include <vector>

#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// Finds the boxes near a box without looking at all of them: a grid of cells, each of which knows
/// the boxes that reach into it (the "cells" of Bentley and Friedman, 1979). A box that grows
/// is put into the cells that it reaches anew.
class BoxIndex {
  public:
    /// For boxes within `bounds`; cells of that size in pixels, at least 1. Long and flat cells
    /// suit lines of text.
    BoxIndex(const Box& bounds, int cellWidth, int cellHeight);

    /// The box named `name` is, or has grown to, `box`.
    void put(std::size_t name, const Box& box);
    /// The names of the boxes that may have a pixel in common with `box`, smallest first, each
    /// once; some of them may have none.
    [[nodiscard]] std::vector<std::size_t> near(const Box& box) const;

  private:
    struct Cells {
        int left;
        int top;
        int right;
        int bottom;
    };
    [[nodiscard]] Cells cellsOf(const Box& box) const;

    Box bounds_;
    int cellWidth_;
    int cellHeight_;
    Plane<std::vector<std::size_t>> cells_;
    /// Where each box was put already, so that growing does not put it there again.
    std::vector<Cells> places_;
};

}  // namespace platform::tesseract
