#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "base/image.h"

namespace platform::tesseract {

struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    friend bool operator==(const Color&, const Color&) = default;
};

/// The sum of the three channels' differences, 0..765.
inline int distance(Color one, Color other) {
    return std::abs(one.red - other.red) + std::abs(one.green - other.green) +
           std::abs(one.blue - other.blue);
}

/// The largest of the three channels' differences, 0..255.
inline int largestDifference(Color one, Color other) {
    return std::max({std::abs(one.red - other.red), std::abs(one.green - other.green),
                     std::abs(one.blue - other.blue)});
}

/// One value for each pixel of a picture, rows from the top.
template <typename Value>
class Plane {
  public:
    Plane() = default;
    Plane(int width, int height, Value value = {})
        : width_(width),
          height_(height),
          values_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), value) {}

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    Value* row(int y) { return values_.data() + offset(y); }
    [[nodiscard]] const Value* row(int y) const { return values_.data() + offset(y); }
    Value& at(int x, int y) { return row(y)[x]; }
    [[nodiscard]] const Value& at(int x, int y) const { return row(y)[x]; }

  private:
    [[nodiscard]] std::size_t offset(int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    }

    int width_ = 0;
    int height_ = 0;
    std::vector<Value> values_;
};

using ColorPlane = Plane<Color>;
/// 0 where there is nothing, up to 255.
using InkPlane = Plane<std::uint8_t>;
/// 0 or 1.
using Mask = Plane<std::uint8_t>;

/// Pixels from `left` and `top` up to, not including, `right` and `bottom`.
struct Box {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    [[nodiscard]] int width() const { return right - left; }
    [[nodiscard]] int height() const { return bottom - top; }
    [[nodiscard]] int area() const { return width() * height(); }
    [[nodiscard]] double centerX() const { return (left + right) / 2.0; }
    [[nodiscard]] double centerY() const { return (top + bottom) / 2.0; }
    /// This box grown to hold `other` too.
    [[nodiscard]] Box united(const Box& other) const {
        return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
                std::max(bottom, other.bottom)};
    }
    /// How many rows both boxes have; negative is the gap between them.
    [[nodiscard]] int sharedRows(const Box& other) const {
        return std::min(bottom, other.bottom) - std::max(top, other.top);
    }
    /// How many columns both boxes have; negative is the gap between them.
    [[nodiscard]] int sharedColumns(const Box& other) const {
        return std::min(right, other.right) - std::max(left, other.left);
    }
    friend bool operator==(const Box&, const Box&) = default;
};

/// The colours of `image`; its alpha is left out, as the screen shows it.
ColorPlane colorsOf(const base::Image& image);

/// The value at `share` (0..1) of the sorted values; 0 when there is none.
double quantile(std::vector<double> values, double share);
inline double median(std::vector<double> values) {
    return quantile(std::move(values), 0.5);
}

}  // namespace platform::tesseract
