#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// The objects of the engine's network as they lie in memory, and of its functions those that are
// called or replaced here. The engine's names, as far as the linker sees them. The layouts follow
// those of Tesseract 5.3.0, copyright its authors (Google Inc. and others), Apache License 2.0;
// engine_layouts.cpp compares them with places that were noted from the engine's own headers.
//
// What is called is declared weak: without it this program still starts, and leaves all to the
// engine. Each object is asked whether it is as a layer here expects it (`isExpected` and the
// like) before anything of it is used.

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

    [[nodiscard]] bool holds(int rowCount, int columnCount) const {
        return values != nullptr && rows == rowCount && columns == columnCount &&
               static_cast<long>(rows) * columns <= allocated;
    }
    [[nodiscard]] T* row(int number) const {
        return values + static_cast<std::ptrdiff_t>(number) * columns;
    }
};

/// Position of a pixel among the rows: batch, height and width.
class StrideMap {
  public:
    /// Of which every pixel counts, row after row.
    [[nodiscard]] bool isOnePicture() const {
        return sizes_[0] == 1 && height() > 0 && width() > 0 && steps_[2] == 1 &&
               steps_[1] == width() && steps_[0] == width() * height() &&
               heights_ == std::vector{height()} && widths_ == std::vector{width()};
    }
    [[nodiscard]] int height() const { return sizes_[1]; }
    [[nodiscard]] int width() const { return sizes_[2]; }

  private:
    friend struct EngineLayout;
    int sizes_[3];
    int steps_[3];
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
    [[gnu::weak]] void ResizeToMap(bool isInteger, const StrideMap& map, int features);
    [[gnu::weak]] void ResizeXTo1(const NetworkIO& source, int features);
    [[gnu::weak]] void ResizeScaled(const NetworkIO& source, int scaleX, int scaleY, int features);
    [[gnu::weak]] void Randomize(int position, int offset, int count, TRand* random);

    /// One picture of whole numbers, so many for each pixel.
    [[nodiscard]] bool isPicture(int features) const {
        return isInteger_ && map_.isOnePicture() &&
               integers_.holds(map_.width() * map_.height(), features);
    }
    [[nodiscard]] bool isPicture(int features, int width, int height) const {
        return isPicture(features) && map_.width() == width && map_.height() == height;
    }
    /// For so many whole numbers from `offset` on, in one of its rows.
    [[nodiscard]] bool hasRoom(int row, int offset, int count) const {
        return integers_.holds(integers_.rows, integers_.columns) && row >= 0 &&
               row < integers_.rows && offset >= 0 && count <= integers_.columns - offset;
    }
    [[nodiscard]] const StrideMap& map() const { return map_; }
    [[nodiscard]] const LayerNumbers<std::int8_t>& integers() const { return integers_; }

  private:
    friend struct EngineLayout;
    LayerNumbers<float> floats_;
    LayerNumbers<std::int8_t> integers_;
    bool isInteger_;
    StrideMap map_;
};

/// What all layers begin with.
class NetworkBase {
  protected:
    friend struct EngineLayout;
    /// Of the engine's kinds of layers.
    static constexpr int convolveType = 2;
    static constexpr int maxpoolType = 3;
    static constexpr int memoryType = 14;
    static constexpr int summaryType = 15;
    static constexpr int tangentType = 19;
    static constexpr int inTraining = 1;

    /// Whether it reads and does not learn.
    [[nodiscard]] bool isReading() const {
        return training_ != inTraining && inputs_ > 0 && outputs_ > 0;
    }

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

class Convolve : public NetworkBase {
  public:
    [[gnu::visibility("default")]] void Forward(bool debug, const NetworkIO& input,
                                                const TransposedArray* transposed,
                                                NetworkScratch* scratch, NetworkIO* output);

  private:
    friend struct EngineLayout;
    [[nodiscard]] bool isExpected() const {
        const long columns = 2L * halfX_ + 1;
        const long rows = 2L * halfY_ + 1;
        return type_ == convolveType && isReading() && halfX_ >= 0 && halfY_ >= 0 &&
               random_ != nullptr && outputs_ == inputs_ * columns * rows;
    }
    /// Whether it takes this input, and has made room for what becomes of it.
    [[nodiscard]] bool prepare(const NetworkIO& input, NetworkIO& output) const;
    /// What lies within the picture, for one row of it.
    void gather(const NetworkIO& input, int y, NetworkIO& output) const;
    /// What lies beyond its edges; drawn in the engine's order.
    void addNoise(NetworkIO& output);

    std::int32_t halfX_;
    std::int32_t halfY_;
};

class Maxpool : public NetworkBase {
  public:
    [[gnu::visibility("default")]] void Forward(bool debug, const NetworkIO& input,
                                                const TransposedArray* transposed,
                                                NetworkScratch* scratch, NetworkIO* output);

  private:
    friend struct EngineLayout;
    [[nodiscard]] bool isExpected() const {
        return type_ == maxpoolType && isReading() && scaleX_ > 0 && scaleY_ > 0 &&
               outputs_ == inputs_;
    }
    /// Whether it takes this input, and has made room for what becomes of it.
    [[nodiscard]] bool prepare(const NetworkIO& input, NetworkIO& output) const;
    /// The largest of one row of rectangles.
    void pool(const NetworkIO& input, int y, NetworkIO& output) const;

    StrideMap forBackpropagation_;
    std::int32_t scaleX_;
    std::int32_t scaleY_;
};

/// What a sum over the inputs is weighted with.
class WeightMatrix {
  public:
    /// The inputs with as many zeros behind them as make them a multiple of 32; as many outputs as
    /// make them a multiple of 8.
    [[gnu::weak]] void MatrixDotVector(const std::int8_t* inputs, float* outputs) const;

    /// Whole numbers, one for each input of each output and one that is always added.
    [[nodiscard]] bool isFor(int inputs, int outputs) const {
        return isInteger_ && integers_.holds(outputs, inputs + 1);
    }

  private:
    friend struct EngineLayout;
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

class FullyConnected : public NetworkBase {
  public:
    [[gnu::visibility("default")]] void Forward(bool debug, const NetworkIO& input,
                                                const TransposedArray* transposed,
                                                NetworkScratch* scratch, NetworkIO* output);

  private:
    friend struct EngineLayout;
    [[nodiscard]] bool isExpected() const {
        return isReading() && weightsOf_.isFor(inputs_, outputs_);
    }
    /// Whether it takes this input, and has made room for what becomes of it.
    [[nodiscard]] bool prepare(const NetworkIO& input, NetworkIO& output) const;
    /// The positions from `first` on, up to `end`.
    void bend(const NetworkIO& input, int first, int end, NetworkIO& output) const;

    WeightMatrix weightsOf_;
};

/// Reads from left to right and remembers: a long short-term memory (Hochreiter and Schmidhuber
/// 1997), with a gate to forget.
class LSTM : public NetworkBase {
  public:
    [[gnu::visibility("default")]] void Forward(bool debug, const NetworkIO& input,
                                                const TransposedArray* transposed,
                                                NetworkScratch* scratch, NetworkIO* output);

  private:
    friend struct EngineLayout;
    enum Weights { cellWeights, inputWeights, forgetWeights, outputWeights, otherForgetWeights };
    static constexpr int weightsCount = 5;
    class Memory;

    [[nodiscard]] bool isExpected() const {
        return (type_ == memoryType || type_ == summaryType) && isReading() && states_ > 0 &&
               outputs_ == states_ && inputsAndStates_ == static_cast<long>(inputs_) + states_ &&
               fedBack_ == 0 && !isTwoDimensional_ && softmax_ == nullptr &&
               std::all_of(weightsOf_, weightsOf_ + otherForgetWeights,
                           [this](const WeightMatrix& weights) {
                               return weights.isFor(inputsAndStates_, states_);
                           });
    }
    /// Whether it takes this input, and has made room for what becomes of it.
    [[nodiscard]] bool prepare(const NetworkIO& input, NetworkIO& output) const;
    /// Those from `first` on, up to `end`.
    void readRows(const NetworkIO& input, int first, int end, NetworkIO& output) const;

    /// The inputs and what was put out last.
    std::int32_t inputsAndStates_;
    std::int32_t states_;
    /// Of the softmax.
    std::int32_t fedBack_;
    bool isTwoDimensional_;
    WeightMatrix weightsOf_[weightsCount];
    void* softmax_;
};

}  // namespace tesseract

// NOLINTEND(readability-identifier-naming)
