#pragma once

#include <vector>

#include "base/image.h"
#include "platform/tesseract/read_line.h"

namespace platform::tesseract {

/// Reads letters of every size with an analysis that knows those of a page of text, by giving it
/// the picture in several sizes (a pyramid, Burt and Adelson 1983). What was read in one size is
/// painted over in the next, so that nothing is read twice.

/// `image` with each side `factor` times as short, each pixel the mean of `factor` by `factor`; the
/// lines that are `isSettled` are painted over with the colour around them.
base::Image reduced(const base::Image& image, int factor, const std::vector<ReadLine>& lines);

/// Whether a line was read so well that no other size can better it.
bool isSettled(const ReadLine& line);

/// Puts what was read on a picture reduced by `factor` where it belongs among `lines`, which were
/// read on larger ones: only letters too large for those, and only what is surely writing, since
/// pictures get sharp when they are reduced. Scraps of the same letters are taken away.
void mergeLarger(std::vector<ReadLine>& lines, std::vector<ReadLine> larger, int factor);

}  // namespace platform::tesseract
