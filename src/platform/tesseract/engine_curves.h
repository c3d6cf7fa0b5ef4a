#pragma once

#include <cstdint>

namespace platform::tesseract {

// What the layers of the engine's network do to single numbers, to the last bit; on processors with
// AVX2 eight at a time. Only where `knowsCurves`.

/// Whether the engine has the tables of its curves where they are expected.
bool knowsCurves();

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
