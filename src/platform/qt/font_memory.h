#pragma once

namespace platform::qt {

/// Closes the font files that were read for texts and frees what was made of them, unless a window
/// is still shown. The next text opens what it needs again, in about a millisecond for each font.
/// Main thread, not while something is painted.
void giveFontsBack();

}  // namespace platform::qt
