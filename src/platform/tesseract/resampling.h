#pragma once

#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

enum class ResamplingKernel { cubic, lanczos };

/// The part of `source` from (`left`, `top`), in source pixels, scaled by `scaleX` and `scaleY` to
/// `width` x `height` pixels; outside of it there is no ink. Separable; the kernel widens when it
/// shrinks. Kernels: Keys' cubic (1981, a = -0.5) and Lanczos with three lobes.
InkPlane resample(const InkPlane& source, double left, double top, int width, int height,
                  double scaleX, double scaleY, ResamplingKernel kernel);

}  // namespace platform::tesseract
