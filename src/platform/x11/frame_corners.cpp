#include "platform/x11/frame_corners.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace platform::x11 {

namespace {

/// No theme has rounder corners; at scale 2 they have 16 to 24 pixels.
constexpr int largestCorner = 32;

/// A corner of the frame, its pixels counted from there inwards.
class Corner {
  public:
    enum class Side { left, right };
    enum class End { top, bottom };

    Corner(const Canvas& canvas, const NativeRect& frame, Side side, End end)
        : canvas_(canvas), frame_(frame), side_(side), end_(end) {}

    [[nodiscard]] std::uint8_t* at(int x, int y) const {
        const int column = side_ == Side::left ? x : frame_.width - 1 - x;
        const int row = end_ == End::top ? y : frame_.height - 1 - y;
        return canvas_.row(frame_.y + row) + static_cast<std::size_t>(frame_.x + column) * 4;
    }
    /// How many black pixels each row begins with, up to the first that begins with none. Empty
    /// when they do not look like what is outside of a round corner.
    [[nodiscard]] std::vector<int> unpaintedRows() const {
        const int reach = std::min({largestCorner, frame_.width / 2, frame_.height / 2});
        std::vector<int> rows;
        for (int y = 0; y < reach; ++y) {
            const int length = blackPixels(y, reach);
            if (length == 0) {
                break;
            }
            if (length == reach || (!rows.empty() && length > rows.back())) {
                return {};
            }
            rows.push_back(length);
        }
        // As high as wide, and more than a dot.
        const int height = static_cast<int>(rows.size());
        const bool isRound = height >= 2 && height < reach &&
                             std::abs(rows.front() - height) <= 2 &&
                             rows.back() <= rows.front() / 2;
        return isRound ? rows : std::vector<int>{};
    }

  private:
    [[nodiscard]] int blackPixels(int y, int reach) const {
        int count = 0;
        while (count < reach && std::all_of(at(count, y), at(count, y) + 3,
                                            [](std::uint8_t level) { return level == 0; })) {
            ++count;
        }
        return count;
    }

    const Canvas& canvas_;
    const NativeRect& frame_;
    Side side_;
    End end_;
};

std::array<Corner, 4> cornersOf(const Canvas& canvas, const NativeRect& frame) {
    using enum Corner::Side;
    using enum Corner::End;
    return {Corner(canvas, frame, left, top), Corner(canvas, frame, right, top),
            Corner(canvas, frame, left, bottom), Corner(canvas, frame, right, bottom)};
}

/// The pixel was blended with black; `inner` is what it was blended from.
void unblend(std::uint8_t* pixel, const std::uint8_t* inner) {
    // Premultiplied colours are never brighter than their alpha.
    int alpha = std::max({pixel[0], pixel[1], pixel[2]});
    for (int channel = 0; channel < 3; ++channel) {
        if (inner[channel] > 0) {
            alpha = std::max(alpha, pixel[channel] * 255 / inner[channel]);
        }
    }
    pixel[3] = static_cast<std::uint8_t>(std::min(alpha, 255));
}

}  // namespace

bool hasUnpaintedCorners(const Canvas& canvas, const NativeRect& frame) {
    const auto corners = cornersOf(canvas, frame);
    return std::any_of(corners.begin(), corners.end(),
                       [](const Corner& corner) { return !corner.unpaintedRows().empty(); });
}

void clearUnpaintedCorners(const Canvas& canvas, const NativeRect& frame) {
    // The edge of a round corner is softened over so many pixels.
    constexpr int softened = 2;
    for (const Corner& corner : cornersOf(canvas, frame)) {
        const auto rows = corner.unpaintedRows();
        const int height = static_cast<int>(rows.size());
        for (int y = 0; y < height + (rows.empty() ? 0 : softened); ++y) {
            const int length = y < height ? rows[static_cast<std::size_t>(y)] : 0;
            const int above = y > 0 && y <= height ? rows[static_cast<std::size_t>(y - 1)] : 0;
            for (int x = 0; x < length; ++x) {
                corner.at(x, y)[3] = 0;
            }
            for (int x = length; x < std::max(length, above) + softened; ++x) {
                unblend(corner.at(x, y), corner.at(x + softened, y + softened));
            }
        }
    }
}

}  // namespace platform::x11
