#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// The objects of the engine's network as they lie in memory, and of its functions those that are
// called or replaced here. The engine's names, as far as the linker sees them. The layouts follow
// those of Tesseract 5.3.0, copyright its authors (Google Inc. and others), Apache License 2.0.

// NOLINTBEGIN(readability-identifier-naming): the engine's names.

namespace tesseract {

/// Numbers of one layer: `rows` positions with `columns` features each.
template <class T>
struct LayerNumbers {
    void* virtualTable;
    T* values;
    T empty;
    int rows;
    int columns;
    int allocated;

    [[nodiscard]] T* row(int number) const {
        return values + static_cast<std::ptrdiff_t>(number) * columns;
    }
};

/// Position of a pixel among the rows: batch, height and width.
class StrideMap {
  public:
    [[nodiscard]] bool isOnePicture() const { return sizes_[0] == 1; }
    [[nodiscard]] int height() const { return sizes_[1]; }
    [[nodiscard]] int width() const { return sizes_[2]; }

  private:
    int sizes_[3];
    [[maybe_unused]] int steps_[3];
    std::vector<int> heights_;
    std::vector<int> widths_;
};

class TRand;
class TransposedArray;
class NetworkScratch;

/// What goes from layer to layer; of the engine's own members those that are called here.
class NetworkIO {
  public:
    [[gnu::visibility("default")]] void WriteTimeStepPart(int position, int offset, int count,
                                                          const float* input);
    void ResizeToMap(bool isInteger, const StrideMap& map, int features);
    void ResizeXTo1(const NetworkIO& source, int features);
    void ResizeScaled(const NetworkIO& source, int scaleX, int scaleY, int features);
    void Randomize(int position, int offset, int count, TRand* random);

    [[nodiscard]] bool isInteger() const { return isInteger_; }
    [[nodiscard]] const StrideMap& map() const { return map_; }
    [[nodiscard]] const LayerNumbers<std::int8_t>& integers() const { return integers_; }

  private:
    LayerNumbers<float> floats_;
    LayerNumbers<std::int8_t> integers_;
    bool isInteger_;
    StrideMap map_;
};

/// What all layers begin with.
class NetworkBase {
  protected:
    /// Of the engine's kinds of layers.
    static constexpr int summaryType = 15;
    static constexpr int tangentType = 19;
    static constexpr int inTraining = 1;

    void* virtualTable_;
    int type_;
    int training_;
    bool needsBackpropagation_;
    std::int32_t flags_;
    std::int32_t inputs_;
    std::int32_t outputs_;
    std::int32_t weights_;
    std::string name_;
    void* forwardWindow_;
    void* backwardWindow_;
    TRand* random_;
};

class Convolve : NetworkBase {
  public:
    [[gnu::visibility("default")]] void Forward(bool debug, const NetworkIO& input,
                                                const TransposedArray* transposed,
                                                NetworkScratch* scratch, NetworkIO* output);

  private:
    /// What lies within the picture, for one row of it.
    void gather(const NetworkIO& input, int y, NetworkIO& output) const;
    /// What lies beyond its edges; drawn in the engine's order.
    void addNoise(NetworkIO& output);

    std::int32_t halfX_;
    std::int32_t halfY_;
};

class FullyConnected : NetworkBase {
  public:
    [[gnu::visibility("default")]] void ForwardTimeStep(int position, float* values);
};

class Maxpool : NetworkBase {
  public:
    [[gnu::visibility("default")]] void Forward(bool debug, const NetworkIO& input,
                                                const TransposedArray* transposed,
                                                NetworkScratch* scratch, NetworkIO* output);

  private:
    StrideMap forBackpropagation_;
    std::int32_t scaleX_;
    std::int32_t scaleY_;
};

/// What a sum over the inputs is weighted with.
class WeightMatrix {
  public:
    /// The inputs with as many zeros behind them as make them a multiple of 32; as many outputs as
    /// make them a multiple of 8.
    void MatrixDotVector(const std::int8_t* inputs, float* outputs) const;

  private:
    LayerNumbers<float> floats_;
    LayerNumbers<std::int8_t> integers_;
    LayerNumbers<float> transposed_;
    bool isInteger_;
    bool usesAdam_;
    std::vector<float> scales_;
    LayerNumbers<float> changes_;
    LayerNumbers<float> updates_;
    LayerNumbers<float> squares_;
    std::vector<std::int8_t> shaped_;
};

/// Reads from left to right and remembers: a long short-term memory (Hochreiter and Schmidhuber
/// 1997), with a gate to forget.
class LSTM : NetworkBase {
  public:
    [[gnu::visibility("default")]] void Forward(bool debug, const NetworkIO& input,
                                                const TransposedArray* transposed,
                                                NetworkScratch* scratch, NetworkIO* output);

  private:
    enum Weights { cellWeights, inputWeights, forgetWeights, outputWeights, otherForgetWeights };
    static constexpr int weightsCount = 5;
    class Memory;

    [[nodiscard]] bool isPlain() const {
        return !isTwoDimensional_ && softmax_ == nullptr && training_ != inTraining;
    }

    /// The inputs and what was put out last.
    std::int32_t inputsAndStates_;
    std::int32_t states_;
    [[maybe_unused]] std::int32_t fedBack_;
    bool isTwoDimensional_;
    WeightMatrix weightsOf_[weightsCount];
    void* softmax_;
};

}  // namespace tesseract

// NOLINTEND(readability-identifier-naming)
