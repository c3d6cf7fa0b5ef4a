#include <cstddef>

#include "platform/tesseract/engine_objects.h"

// The places of what is read in the engine's objects, noted from the headers of Tesseract 5.3.0 as
// x86-64 and GCC's library lay them out. What is declared here is held to these notes; that the
// engine in use is of that version is asked when the program runs.

#if defined(__x86_64__) && defined(__GLIBCXX__)

// Well defined for all compilers of that platform, which lay objects out alike.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace tesseract {

struct EngineLayout {
    using Integers = LayerNumbers<std::int8_t>;
    static_assert(sizeof(Integers) == 32 && sizeof(LayerNumbers<float>) == 32);
    static_assert(offsetof(Integers, values) == 8);
    static_assert(offsetof(Integers, rows) == 20);
    static_assert(offsetof(Integers, columns) == 24);
    static_assert(offsetof(Integers, allocated) == 28);

    static_assert(sizeof(StrideMap) == 72);
    static_assert(offsetof(StrideMap, sizes_) == 0);
    static_assert(offsetof(StrideMap, steps_) == 12);
    static_assert(offsetof(StrideMap, heights_) == 24);
    static_assert(offsetof(StrideMap, widths_) == 48);

    static_assert(sizeof(NetworkIO) == 144);
    static_assert(offsetof(NetworkIO, integers_) == 32);
    static_assert(offsetof(NetworkIO, isInteger_) == 64);
    static_assert(offsetof(NetworkIO, map_) == 72);

    static_assert(sizeof(NetworkBase) == 96);
    static_assert(offsetof(NetworkBase, type_) == 8);
    static_assert(offsetof(NetworkBase, training_) == 12);
    static_assert(offsetof(NetworkBase, inputs_) == 24);
    static_assert(offsetof(NetworkBase, outputs_) == 28);
    static_assert(offsetof(NetworkBase, random_) == 88);

    static_assert(offsetof(Convolve, halfX_) == 96);
    static_assert(offsetof(Convolve, halfY_) == 100);

    static_assert(offsetof(Maxpool, scaleX_) == 168);
    static_assert(offsetof(Maxpool, scaleY_) == 172);

    static_assert(sizeof(WeightMatrix) == 248);
    static_assert(offsetof(WeightMatrix, integers_) == 32);
    static_assert(offsetof(WeightMatrix, isInteger_) == 96);

    static_assert(offsetof(FullyConnected, weightsOf_) == 96);

    static_assert(offsetof(LSTM, inputsAndStates_) == 96);
    static_assert(offsetof(LSTM, states_) == 100);
    static_assert(offsetof(LSTM, fedBack_) == 104);
    static_assert(offsetof(LSTM, isTwoDimensional_) == 108);
    static_assert(offsetof(LSTM, weightsOf_) == 112);
    static_assert(offsetof(LSTM, softmax_) == 1352);
};

}  // namespace tesseract

#endif
