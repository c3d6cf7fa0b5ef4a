#include "platform/tesseract/engine_curves.h"

#include <algorithm>
#include <cmath>

#include "platform/tesseract/engine_function.h"
#include "platform/tesseract/engine_symbols.h"

namespace platform::tesseract {

namespace {

constexpr std::size_t tableSize = 4096;

/// A curve as the engine has it: interpolated in a table of 256 values for each whole number up to
/// 16, and 1 beyond. Of a number that is not negative; what is none stays within the table.
[[gnu::always_inline]] inline float onCurve(const float* table, float value) {
    constexpr float scale = 256;
    constexpr float end = 4095;
    constexpr float last = 4094.9998F;
    const float place = value * scale;
    const float inside = std::min(last, place);
    const int index = static_cast<int>(inside);
    const float low = table[index];
    const float between = low + (table[index + 1] - low) * (inside - static_cast<float>(index));
    return place >= end ? 1 : between;
}

const float* tangentTable() {
    static const auto* const table = engineTable<float>(symbols::tangentTable, tableSize);
    return table;
}

const float* logisticTable() {
    static const auto* const table = engineTable<float>(symbols::logisticTable, tableSize);
    return table;
}

[[gnu::always_inline]] inline float tangent(const float* table, float value) {
    const float result = onCurve(table, std::abs(value));
    return value < 0 ? -result : result;
}

[[gnu::always_inline]] inline float logistic(const float* table, float value) {
    const float result = onCurve(table, std::abs(value));
    return value < 0 ? 1 - result : result;
}

// The loops, written once; compiled for every processor and for those with AVX2.

[[gnu::always_inline]] inline void bendAll(const float* table, float* values, int count) {
    for (int index = 0; index < count; ++index) {
        values[index] = tangent(table, values[index]);
    }
}

[[gnu::always_inline]] inline void quantizeAll(const float* values, int count,
                                               std::int8_t* quantized) {
    constexpr float largest = 127;
    for (int index = 0; index < count; ++index) {
        const float scaled = std::min(largest, std::max(-largest, values[index] * largest));
        quantized[index] =
            static_cast<std::int8_t>(static_cast<int>(scaled + std::copysign(0.5F, scaled)));
    }
}

struct Tables {
    const float* tangents;
    const float* logistics;
};

[[gnu::always_inline]] inline void rememberAll(const Tables& tables, const GateSums& sums,
                                               int count, float* __restrict states,
                                               float* __restrict outputs) {
    constexpr float largest = 100;
    const auto gate = [&tables](float sum) __attribute__((always_inline)) {
        return logistic(tables.logistics, sum);
    };
    for (int index = 0; index < count; ++index) {
        float state = states[index] * gate(sums.forget[index]);
        state += tangent(tables.tangents, sums.cell[index]) * gate(sums.input[index]);
        state = std::min(std::max(state, -largest), largest);
        states[index] = state;
        outputs[index] = tangent(tables.tangents, state) * gate(sums.output[index]);
    }
}

CurveLoops chosen = CurveLoops::widest;

// Where engine_layouts.cpp holds the engine's objects to their places.
#if defined(__x86_64__) && defined(__GLIBCXX__)
constexpr bool isComparedPlatform = true;
#else
constexpr bool isComparedPlatform = false;
#endif

#if defined(__x86_64__)

bool isWide() {
    static const bool hasAvx2 = __builtin_cpu_supports("avx2") != 0;
    return hasAvx2 && chosen == CurveLoops::widest;
}

[[gnu::target("avx2")]] void bendWide(const float* table, float* values, int count) {
    bendAll(table, values, count);
}

[[gnu::target("avx2")]] void quantizeWide(const float* values, int count, std::int8_t* quantized) {
    quantizeAll(values, count, quantized);
}

[[gnu::target("avx2")]] void rememberWide(const Tables& tables, const GateSums& sums, int count,
                                          float* states, float* outputs) {
    rememberAll(tables, sums, count, states, outputs);
}

#else

bool isWide() {
    return false;
}
constexpr auto bendWide = bendAll;
constexpr auto quantizeWide = quantizeAll;
constexpr auto rememberWide = rememberAll;

#endif

}  // namespace

bool knowsCurves() {
    return isComparedPlatform && tangentTable() != nullptr && logisticTable() != nullptr;
}

void chooseCurveLoops(CurveLoops loops) {
    chosen = loops;
}

void bendByTangent(float* values, int count) {
    isWide() ? bendWide(tangentTable(), values, count) : bendAll(tangentTable(), values, count);
}

void quantize(const float* values, int count, std::int8_t* quantized) {
    isWide() ? quantizeWide(values, count, quantized) : quantizeAll(values, count, quantized);
}

void remember(const GateSums& sums, int count, float* states, float* outputs) {
    const Tables tables{tangentTable(), logisticTable()};
    isWide() ? rememberWide(tables, sums, count, states, outputs)
             : rememberAll(tables, sums, count, states, outputs);
}

}  // namespace platform::tesseract
