#include "platform/tesseract/engine_layers.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <iterator>

#include "platform/tesseract/engine_curves.h"
#include "platform/tesseract/engine_function.h"
#include "platform/tesseract/engine_objects.h"
#include "platform/tesseract/engine_parts.h"
#include "platform/tesseract/engine_symbols.h"
#include "platform/tesseract/thread_pair.h"

// The dynamic linker prefers these layers to the engine's own. They give the same numbers to the
// last bit, and spend no time on finding the place of each. What is not as they expect it goes to
// the engine's own.

namespace platform::tesseract {

namespace {

std::atomic<long> refused{0};
thread_local std::array<long, engineLayerCount> taken{};

long& takenBy(EngineLayer layer) {
    return taken[static_cast<std::size_t>(layer)];
}

bool isThere(const char* name) {
    return engineFunction<void*>(name) != nullptr;
}

bool isReplaced(const char* name) {
    return isThere(name) && ::dlsym(RTLD_DEFAULT, name) != engineFunction<void*>(name);
}

/// Whether the weak references lead anywhere: a linker may leave them empty although the engine has
/// what they name.
bool areCallsBound() {
    using ::tesseract::NetworkIO;
    const auto areBound = [](auto... functions) { return ((functions != nullptr) && ...); };
    return areBound(&NetworkIO::ResizeToMap, &NetworkIO::ResizeXTo1, &NetworkIO::ResizeScaled,
                    &NetworkIO::Randomize, &::tesseract::WeightMatrix::MatrixDotVector);
}

}  // namespace

bool replacesLayers() {
    return areCallsBound() &&
           std::all_of(std::begin(symbols::called), std::end(symbols::called), isThere) &&
           std::all_of(std::begin(symbols::replaced), std::end(symbols::replaced), isReplaced);
}

long takenCalls(EngineLayer layer) {
    return takenBy(layer);
}

long refusedCalls() {
    return refused.load(std::memory_order_relaxed);
}

}  // namespace platform::tesseract

namespace tesseract {

using platform::tesseract::engineFunction;
using platform::tesseract::EngineLayer;
using platform::tesseract::shareBands;
using platform::tesseract::usesOwnParts;
namespace symbols = platform::tesseract::symbols;

namespace {

template <class Layer>
using Forward = void (*)(Layer*, bool, const NetworkIO&, const TransposedArray*, NetworkScratch*,
                         NetworkIO*);

/// Counts what the layers of this program take, and what they cannot.
bool accepted(EngineLayer layer, bool isExpected) {
    if (isExpected) {
        ++platform::tesseract::takenBy(layer);
    } else {
        platform::tesseract::refused.fetch_add(1, std::memory_order_relaxed);
    }
    return isExpected;
}

/// The engine reads and writes whole registers.
std::size_t padded(int count) {
    constexpr std::size_t widest = 64;
    return (static_cast<std::size_t>(count) / widest + 2) * widest;
}

}  // namespace

void NetworkIO::WriteTimeStepPart(int position, int offset, int count, const float* input) {
    if (!usesOwnParts() || !isInteger_ ||
        !accepted(EngineLayer::numbers, hasRoom(position, offset, count))) {
        using Write = void (*)(NetworkIO*, int, int, int, const float*);
        static const auto write = engineFunction<Write>(symbols::writeTimeStepPart);
        write(this, position, offset, count, input);
        return;
    }
    platform::tesseract::quantize(input, count, integers_.row(position) + offset);
}

// Each position is summed up and bent by itself.
void FullyConnected::Forward(bool debug, const NetworkIO& input, const TransposedArray* transposed,
                             NetworkScratch* scratch, NetworkIO* output) {
    if (debug || !usesOwnParts() || type_ != tangentType ||
        !accepted(EngineLayer::tangents, prepare(input, *output))) {
        static const auto forward =
            engineFunction<tesseract::Forward<FullyConnected>>(symbols::forwardConnected);
        forward(this, debug, input, transposed, scratch, output);
        return;
    }
    constexpr int pixelsOfPosition = 35;
    shareBands(input.map().width() * input.map().height(), pixelsOfPosition,
               [&](int first, int end) { bend(input, first, end, *output); });
}

bool FullyConnected::prepare(const NetworkIO& input, NetworkIO& output) const {
    if (!isExpected() || !input.isPicture(inputs_)) {
        return false;
    }
    output.ResizeToMap(true, input.map(), outputs_);
    return output.isPicture(outputs_, input.map().width(), input.map().height());
}

void FullyConnected::bend(const NetworkIO& input, int first, int end, NetworkIO& output) const {
    std::vector<float> sums(padded(outputs_));
    for (int position = first; position < end; ++position) {
        weightsOf_.MatrixDotVector(input.integers().row(position), sums.data());
        platform::tesseract::bendByTangent(sums.data(), outputs_);
        platform::tesseract::quantize(sums.data(), outputs_, output.integers().row(position));
    }
}

// Each position takes the features of its neighbours, column by column.
void Convolve::Forward(bool debug, const NetworkIO& input, const TransposedArray* transposed,
                       NetworkScratch* scratch, NetworkIO* output) {
    if (debug || !usesOwnParts() || !accepted(EngineLayer::convolve, prepare(input, *output))) {
        static const auto forward =
            engineFunction<tesseract::Forward<Convolve>>(symbols::forwardConvolve);
        forward(this, debug, input, transposed, scratch, output);
        return;
    }
    constexpr int pixelsOfPixel = 3;
    shareBands(input.map().height(), pixelsOfPixel * input.map().width(), [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            gather(input, y, *output);
        }
    });
    addNoise(*output);
}

bool Convolve::prepare(const NetworkIO& input, NetworkIO& output) const {
    if (!isExpected() || !input.isPicture(inputs_)) {
        return false;
    }
    output.ResizeToMap(true, input.map(), outputs_);
    return output.isPicture(outputs_, input.map().width(), input.map().height());
}

void Convolve::gather(const NetworkIO& input, int y, NetworkIO& output) const {
    const int width = input.map().width();
    int offset = 0;
    for (int besideX = -halfX_; besideX <= halfX_; ++besideX) {
        for (int fromY = y - halfY_; fromY <= y + halfY_; ++fromY, offset += inputs_) {
            if (fromY < 0 || fromY >= input.map().height()) {
                continue;
            }
            const int first = std::max(0, -besideX);
            const int end = width - std::max(0, besideX);
            if (first >= end) {
                continue;
            }
            const std::int8_t* from = input.integers().row(fromY * width + first + besideX);
            std::int8_t* to = output.integers().row(y * width + first) + offset;
            for (int x = first; x < end; ++x, from += inputs_, to += outputs_) {
                for (int feature = 0; feature < inputs_; ++feature) {
                    to[feature] = from[feature];
                }
            }
        }
    }
}

void Convolve::addNoise(NetworkIO& output) {
    const int width = output.map().width();
    const int height = output.map().height();
    const int column = (2 * halfY_ + 1) * inputs_;
    for (int y = 0; y < height; ++y) {
        const bool isInside = y >= halfY_ && y < height - halfY_;
        for (int x = 0; x < width; ++x) {
            if (isInside && x >= halfX_ && x < width - halfX_) {
                continue;
            }
            int offset = 0;
            for (int fromX = x - halfX_; fromX <= x + halfX_; ++fromX, offset += column) {
                if (fromX < 0 || fromX >= width) {
                    output.Randomize(y * width + x, offset, column, random_);
                    continue;
                }
                for (int row = 0; row <= 2 * halfY_; ++row) {
                    const int fromY = y - halfY_ + row;
                    if (fromY < 0 || fromY >= height) {
                        output.Randomize(y * width + x, offset + row * inputs_, inputs_, random_);
                    }
                }
            }
        }
    }
}

// The largest of each feature in rectangles that do not overlap. Where each came from is only asked
// for in training.
void Maxpool::Forward(bool debug, const NetworkIO& input, const TransposedArray* transposed,
                      NetworkScratch* scratch, NetworkIO* output) {
    if (debug || !usesOwnParts() || !accepted(EngineLayer::maxpool, prepare(input, *output))) {
        static const auto forward =
            engineFunction<tesseract::Forward<Maxpool>>(symbols::forwardMaxpool);
        forward(this, debug, input, transposed, scratch, output);
        return;
    }
    constexpr int pixelsOfPixel = 4;
    shareBands(output->map().height(), pixelsOfPixel * scaleY_ * input.map().width(),
               [&](int first, int end) {
                   for (int y = first; y < end; ++y) {
                       pool(input, y, *output);
                   }
               });
}

void Maxpool::pool(const NetworkIO& input, int y, NetworkIO& output) const {
    const int sourceWidth = input.map().width();
    const int width = output.map().width();
    for (int x = 0; x < width; ++x) {
        std::int8_t* to = output.integers().row(y * width + x);
        const int first = y * scaleY_ * sourceWidth + x * scaleX_;
        std::memcpy(to, input.integers().row(first), static_cast<std::size_t>(inputs_));
        for (int fromY = 0; fromY < scaleY_; ++fromY) {
            for (int fromX = 0; fromX < scaleX_; ++fromX) {
                const std::int8_t* from = input.integers().row(first + fromY * sourceWidth + fromX);
                for (int index = 0; index < inputs_; ++index) {
                    to[index] = to[index] < from[index] ? from[index] : to[index];
                }
            }
        }
    }
}

bool Maxpool::prepare(const NetworkIO& input, NetworkIO& output) const {
    if (!isExpected() || !input.isPicture(inputs_)) {
        return false;
    }
    output.ResizeScaled(input, scaleX_, scaleY_, outputs_);
    return output.isPicture(outputs_, input.map().width() / scaleX_,
                            input.map().height() / scaleY_);
}

/// What is remembered from position to position, and what is computed from it.
class LSTM::Memory {
  public:
    explicit Memory(const LSTM& layer)
        : layer_(layer),
          source_(padded(layer.inputsAndStates_)),
          cell_(padded(layer.states_)),
          input_(cell_),
          forget_(cell_),
          gate_(cell_),
          state_(cell_),
          output_(cell_) {}

    [[nodiscard]] const float* output() const { return output_.data(); }

    void forget() {
        std::fill(state_.begin(), state_.end(), 0.0F);
        std::fill(output_.begin(), output_.end(), 0.0F);
    }

    void step(const std::int8_t* inputs) {
        std::copy_n(inputs, layer_.inputs_, source_.begin());
        platform::tesseract::quantize(output_.data(), layer_.states_,
                                      source_.data() + layer_.inputs_);
        sum(cellWeights, cell_);
        sum(inputWeights, input_);
        sum(forgetWeights, forget_);
        sum(outputWeights, gate_);
        platform::tesseract::remember({cell_.data(), input_.data(), forget_.data(), gate_.data()},
                                      layer_.states_, state_.data(), output_.data());
    }

  private:
    void sum(Weights weights, std::vector<float>& sums) const {
        layer_.weightsOf_[weights].MatrixDotVector(source_.data(), sums.data());
    }

    const LSTM& layer_;
    std::vector<std::int8_t> source_;
    std::vector<float> cell_;
    std::vector<float> input_;
    std::vector<float> forget_;
    std::vector<float> gate_;
    std::vector<float> state_;
    std::vector<float> output_;
};

bool LSTM::prepare(const NetworkIO& input, NetworkIO& output) const {
    if (!isExpected() || !input.isPicture(inputs_)) {
        return false;
    }
    if (type_ == summaryType) {
        output.ResizeXTo1(input, outputs_);
        return output.isPicture(outputs_, 1, input.map().height());
    }
    output.ResizeToMap(true, input.map(), outputs_);
    return output.isPicture(outputs_, input.map().width(), input.map().height());
}

void LSTM::Forward(bool debug, const NetworkIO& input, const TransposedArray* transposed,
                   NetworkScratch* scratch, NetworkIO* output) {
    if (debug || !usesOwnParts() || !accepted(EngineLayer::memory, prepare(input, *output))) {
        static const auto forward =
            engineFunction<tesseract::Forward<LSTM>>(symbols::forwardMemory);
        forward(this, debug, input, transposed, scratch, output);
        return;
    }
    // Nothing is remembered from row to row. Where a line goes through as one row, it is not cut;
    // where each of its columns is a row, a band of 16 takes a tenth of a millisecond.
    constexpr int smallestBand = 16;
    constexpr int mostBands = 8;
    const int height = input.map().height();
    const int bands = std::clamp(height / smallestBand, 1, mostBands);
    platform::tesseract::shareParts(bands, [&](int band) {
        readRows(input, height * band / bands, height * (band + 1) / bands, *output);
    });
}

void LSTM::readRows(const NetworkIO& input, int first, int end, NetworkIO& output) const {
    const bool isSummary = type_ == summaryType;
    Memory memory(*this);
    const int width = input.map().width();
    for (int y = first; y < end; ++y) {
        memory.forget();
        for (int x = 0; x < width; ++x) {
            const int position = y * width + x;
            memory.step(input.integers().row(position));
            if (!isSummary) {
                output.WriteTimeStepPart(position, 0, outputs_, memory.output());
            } else if (x + 1 == width) {
                output.WriteTimeStepPart(y, 0, outputs_, memory.output());
            }
        }
    }
}

}  // namespace tesseract
