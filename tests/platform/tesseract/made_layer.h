#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "platform/tesseract/engine_function.h"
#include "platform/tesseract/engine_objects.h"
#include "platform/tesseract/engine_symbols.h"

namespace platform::tesseract {

/// What goes into a layer and comes out of it, with the engine's own memory.
class Numbers {
  public:
    Numbers() {
        // Their constructors are nowhere but in the engine's headers; all else starts as zero.
        setTable(0, "_ZTVN9tesseract16GENERIC_2D_ARRAYIfEE");
        setTable(sizeof(::tesseract::LayerNumbers<float>), "_ZTVN9tesseract16GENERIC_2D_ARRAYIaEE");
    }
    ~Numbers() { engineFunction<void (*)(void*)>("_ZN9tesseract9NetworkIOD1Ev")(memory_.data()); }
    Numbers(const Numbers&) = delete;
    Numbers& operator=(const Numbers&) = delete;

    /// Makes room for whole numbers of one picture.
    void resize(int width, int height, int features) {
        ::tesseract::StrideMap map{};
        using SetStride =
            void (*)(::tesseract::StrideMap*, const std::vector<std::pair<int, int>>&);
        engineFunction<SetStride>(
            "_ZN9tesseract9StrideMap9SetStrideERKSt6vectorISt4pairIiiESaIS3_"
            "EE")(&map, {{height, width}});
        io().ResizeToMap(true, map, features);
    }
    /// Any whole numbers from the smallest to the largest.
    void fill(int width, int height, int features, std::minstd_rand& random) {
        resize(width, height, features);
        std::uniform_int_distribution<int> any(-127, 127);
        for (int index = 0; index < width * height * features; ++index) {
            io().integers().values[index] = static_cast<std::int8_t>(any(random));
        }
    }
    [[nodiscard]] std::vector<int> all() {
        const auto& integers = io().integers();
        return {integers.values,
                integers.values + static_cast<std::ptrdiff_t>(integers.rows) * integers.columns};
    }
    ::tesseract::NetworkIO& io() {
        return *reinterpret_cast<::tesseract::NetworkIO*>(memory_.data());
    }

  private:
    void setTable(std::size_t place, const char* name) {
        // Behind the first two entries, which are for casts.
        const auto* table = engineFunction<const char*>(name) + 2 * sizeof(void*);
        std::memcpy(memory_.data() + place, &table, sizeof(table));
    }

    alignas(::tesseract::NetworkIO) std::array<std::byte, sizeof(::tesseract::NetworkIO)> memory_{};
};

/// A layer that the engine has made and weighted itself.
class MadeLayer {
  public:
    /// `symbols` are the linker's names of its functions, by what they do.
    struct Symbols {
        const char* forward;
        const char* end;
        const char* drawWeights = nullptr;
        const char* makeInteger = nullptr;
    };

    /// `construct` is given the memory for the layer.
    template <class Construct>
    MadeLayer(const Symbols& symbols, const Construct& construct) : symbols_(symbols) {
        construct(static_cast<void*>(memory_.data()));
        using SetTraining = void (*)(void*, int);
        engineFunction<SetTraining>("_ZN9tesseract7Network17SetEnableTrainingENS_13TrainingStateE")(
            memory_.data(), 0);
        useRandom();
        if (symbols.drawWeights != nullptr) {
            constexpr float range = 3;
            engineFunction<int (*)(void*, float, void*)>(symbols.drawWeights)(memory_.data(), range,
                                                                              &random_);
            engineFunction<void (*)(void*)>(symbols.makeInteger)(memory_.data());
        }
    }
    ~MadeLayer() { engineFunction<void (*)(void*)>(symbols_.end)(memory_.data()); }
    MadeLayer(const MadeLayer&) = delete;
    MadeLayer& operator=(const MadeLayer&) = delete;

    /// Through the function that the engine would call; the noise is the same each time.
    std::vector<int> forward(Numbers& input) {
        // The engine's own is all zeros at first, too; it ends with the process.
        alignas(std::max_align_t) static std::array<std::byte, 4096> scratch{};
        scratch[0] = std::byte{1};
        useRandom();
        using Forward = void (*)(void*, bool, const ::tesseract::NetworkIO&, const void*, void*,
                                 ::tesseract::NetworkIO*);
        Numbers output;
        reinterpret_cast<Forward>(::dlsym(RTLD_DEFAULT, symbols_.forward))(
            memory_.data(), false, input.io(), nullptr, scratch.data(), &output.io());
        return output.all();
    }

  private:
    void useRandom() {
        random_.seed(7);
        engineFunction<void (*)(void*, void*)>("_ZN9tesseract7Network13SetRandomizerEPNS_5TRandE")(
            memory_.data(), &random_);
    }

    Symbols symbols_;
    /// More than the largest layer has.
    alignas(std::max_align_t) std::array<std::byte, 8192> memory_{};
    std::minstd_rand random_;
};

inline MadeLayer madeConvolve(int inputs, int halfX, int halfY) {
    return {{symbols::forwardConvolve, "_ZN9tesseract8ConvolveD1Ev"}, [=](void* memory) {
                engineFunction<void (*)(void*, const std::string&, int, int, int)>(
                    "_ZN9tesseract8ConvolveC1ERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIc"
                    "EEEiii")(memory, "layer", inputs, halfX, halfY);
            }};
}

inline MadeLayer madeMaxpool(int inputs, int scaleX, int scaleY) {
    return {{symbols::forwardMaxpool, "_ZN9tesseract7MaxpoolD1Ev"}, [=](void* memory) {
                engineFunction<void (*)(void*, const char*, int, int, int)>(
                    "_ZN9tesseract7MaxpoolC1EPKciii")(memory, "layer", inputs, scaleX, scaleY);
            }};
}

/// The engine's kinds of layers.
enum class LayerKind { memory = 14, summary = 15, tangent = 19 };

inline MadeLayer madeMemory(int inputs, int states, LayerKind kind) {
    return {{symbols::forwardMemory, "_ZN9tesseract4LSTMD1Ev",
             "_ZN9tesseract4LSTM11InitWeightsEfPNS_5TRandE", "_ZN9tesseract4LSTM12ConvertToIntEv"},
            [=](void* memory) {
                engineFunction<void (*)(void*, const std::string&, int, int, int, bool, int)>(
                    "_ZN9tesseract4LSTMC1ERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEii"
                    "ibNS_11NetworkTypeE")(memory, "layer", inputs, states, states, false,
                                           static_cast<int>(kind));
            }};
}

inline MadeLayer madeTangents(int inputs, int outputs) {
    return {{symbols::forwardConnected, "_ZN9tesseract14FullyConnectedD1Ev",
             "_ZN9tesseract14FullyConnected11InitWeightsEfPNS_5TRandE",
             "_ZN9tesseract14FullyConnected12ConvertToIntEv"},
            [=](void* memory) {
                engineFunction<void (*)(void*, const std::string&, int, int, int)>(
                    "_ZN9tesseract14FullyConnectedC1ERKNSt7__cxx1112basic_stringIcSt11char_traitsIc"
                    "ESaIcEEEiiNS_11NetworkTypeE")(memory, "layer", inputs, outputs,
                                                   static_cast<int>(LayerKind::tangent));
            }};
}

}  // namespace platform::tesseract
