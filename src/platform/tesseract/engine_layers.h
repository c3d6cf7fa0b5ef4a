#pragma once

namespace platform::tesseract {

/// What this program has in place of the engine's own: the numbers that a layer puts out, rounded;
/// its curve; and whole layers.
enum class EngineLayer { numbers, tangents, convolve, maxpool, memory };
inline constexpr int engineLayerCount = 5;

/// Whether the engine has all that the layers of this program replace and call, and finds this
/// program's before its own. Whoever asks has the layers linked.
bool replacesLayers();

/// How many calls this layer of this program has taken from the engine or another layer. Of the
/// calling thread alone: a line of text makes thousands of calls, on two threads at once.
long takenCalls(EngineLayer layer);

/// How often a layer of this program has left to the engine what it could have taken, because it
/// did not look as declared. Grows on any thread.
long refusedCalls();

}  // namespace platform::tesseract
