#pragma once

namespace platform::tesseract {

/// Which of the two computes the engine's layers.
enum class LayerImplementation { engine, ownWhereKnown };

/// Chooses for all engines of this process; `ownWhereKnown` from the start. Not while one reads.
void chooseLayers(LayerImplementation implementation);

/// Whether the layers of this program are in use: chosen, and the engine is one whose objects are
/// known to look as they are declared here.
bool usesOwnLayers();

}  // namespace platform::tesseract
