#pragma once

namespace base {

/// What one run of the overlay is for.
enum class CaptureMode { screenshot, ocr };

}  // namespace base
