#pragma once

#include <cstdint>

namespace platform::tesseract {

// What the layers of the engine's network do to single numbers, to the last bit; on processors with
// AVX2 eight at a time. Only where `knowsCurves`.

/// Whether the engine has the tables of its curves, in the size that is read here. Never but on
/// x86-64 with GCC's library, where the loops and the layers were compared with the engine's own.
bool knowsCurves();

/// Which of the loops compute: those for any processor, or the widest that this one can run.
enum class CurveLoops { any, widest };

/// Chooses for the whole process; `widest` from the start. Not while an engine reads.
void chooseCurveLoops(CurveLoops loops);

/// `values` become their hyperbolic tangents, as the engine's table has them.
void bendByTangent(float* values, int count);

/// Of -1..1 to -127..127, rounded half away from zero.
void quantize(const float* values, int count, std::int8_t* quantized);

/// The sums of one position of a long short-term memory, one for each of its states.
struct GateSums {
    const float* cell;
    const float* input;
    const float* forget;
    const float* output;
};

/// Takes the states of a memory one position further, and computes what it puts out there.
void remember(const GateSums& sums, int count, float* states, float* outputs);

}  // namespace platform::tesseract
