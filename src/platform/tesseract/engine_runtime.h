#pragma once

namespace platform::tesseract {

/// Holds the engine's work to the calling thread.
///
/// With this function come this program's own versions of what the engine asks of the libraries
/// beneath it, and of itself, which the dynamic linker prefers: OpenMP's entry points call their
/// loop at once, the copy of a line that the engine packs as a PNG picture only to unpack it again
/// is not packed, outlines of letters that nobody asks for are not traced, and a table that only
/// the engine of old used is not built. That is a seventh of the time of a reading, and two thirds
/// of the time that loading takes.
void keepEngineOnThisThread();

}  // namespace platform::tesseract
