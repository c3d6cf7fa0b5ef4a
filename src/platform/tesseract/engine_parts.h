#pragma once

namespace platform::tesseract {

/// Who does the work of those parts of the engine that this program replaces: the layers of its
/// network, the outlines of letters, and a table for the engine of old.
enum class PartImplementation { engine, ownWhereKnown };

/// Chooses for all engines of this process; `ownWhereKnown` from the start. Not while one reads or
/// is loaded.
void chooseParts(PartImplementation implementation);

/// Whether the parts of this program are in use: chosen, and the engine is one whose objects are
/// known to look as they are declared here.
bool usesOwnParts();

}  // namespace platform::tesseract
