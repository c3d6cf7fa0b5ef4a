#pragma once

namespace platform::tesseract {

/// Whether the engine has all that the layers of this program replace and call, and finds this
/// program's before its own. Whoever asks has the layers linked.
bool replacesLayers();

/// How often a layer of this program has left to the engine what it could have taken, because it
/// did not look as declared. Grows on any thread.
long refusedCalls();

}  // namespace platform::tesseract
