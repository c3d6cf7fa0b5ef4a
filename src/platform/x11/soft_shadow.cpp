#include "platform/x11/soft_shadow.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <deque>
#include <numbers>
#include <utility>

namespace platform::x11 {

namespace {

constexpr float strength = 0.45F;
constexpr double blurPoints = 8;
constexpr double dropPoints = 8;
constexpr int halfOpaque = 128;

/// Which pixels of a row cast a shadow.
std::vector<bool> casting(const Canvas& canvas, const NativeRect& window, int y) {
    std::vector<bool> row(static_cast<std::size_t>(canvas.width));
    const std::uint8_t* alpha = canvas.row(y) + static_cast<std::size_t>(window.x) * 4 + 3;
    for (int x = window.x; x < window.x + window.width; ++x, alpha += 4) {
        row[static_cast<std::size_t>(x)] = *alpha >= halfOpaque;
    }
    return row;
}

/// Puts black of the strength of the shares below the pixels.
void darken(std::uint8_t* row, const std::vector<float>& shares) {
    std::uint8_t* alpha = row + 3;
    for (const float share : shares) {
        if (*alpha != 255) {
            // Only the alpha changes.
            const float shadow = 255 * strength * std::clamp(share, 0.0F, 1.0F);
            *alpha = static_cast<std::uint8_t>(std::lround(
                static_cast<float>(*alpha) + shadow * static_cast<float>(255 - *alpha) / 255));
        }
        alpha += 4;
    }
}

}  // namespace

SoftShadow::SoftShadow(double scale)
    : blur_(blurPoints * scale),
      // Three times the width of the blur: 0.13 % of the strength are left there.
      reach_(static_cast<int>(std::ceil(3 * blur_))),
      drop_(static_cast<int>(std::lround(dropPoints * scale))) {
    for (int distance = -reach_; distance < reach_; ++distance) {
        profile_.push_back(static_cast<float>(inside(0, distance + 0.5)));
    }
}

NativeRect SoftShadow::frameAround(const NativeRect& window) const {
    return {window.x - reach_, window.y - reach_ + drop_, window.width + 2 * reach_,
            window.height + 2 * reach_};
}

/// How much of a blurred half plane that begins at `edge` there is at `place`.
double SoftShadow::inside(double edge, double place) const {
    return 0.5 * (1 + std::erf((place - edge) / (blur_ * std::numbers::sqrt2)));
}

std::vector<float> SoftShadow::blurred(const std::vector<bool>& row) const {
    const int length = static_cast<int>(row.size());
    std::vector<float> shares(row.size());
    // What an edge adds to every column beyond its reach.
    std::vector<float> steps(row.size() + 1);
    const auto addEdge = [&](int edge, float sign) {
        const int first = std::max(edge - reach_, 0);
        const int last = std::min(edge + reach_, length);
        for (int x = first; x < last; ++x) {
            const int distance = x - edge + reach_;
            shares[static_cast<std::size_t>(x)] +=
                sign * profile_[static_cast<std::size_t>(distance)];
        }
        steps[static_cast<std::size_t>(last)] += sign;
    };
    bool isCasting = false;
    for (int x = 0; x < length; ++x) {
        if (row[static_cast<std::size_t>(x)] != isCasting) {
            isCasting = !isCasting;
            addEdge(x, isCasting ? 1.0F : -1.0F);
        }
    }
    if (isCasting) {
        addEdge(length, -1.0F);
    }
    float step = 0;
    for (std::size_t x = 0; x < shares.size(); ++x) {
        step += steps[x];
        shares[x] += step;
    }
    return shares;
}

void SoftShadow::draw(const Canvas& canvas, const NativeRect& window) const {
    std::deque<Band> bands;
    std::vector<bool> lastRow;
    std::vector<float> shares(static_cast<std::size_t>(canvas.width));
    int nextRow = window.y;
    for (int y = 0; y < canvas.height; ++y) {
        // A row is read before its shadow is drawn on it: it is cast downwards.
        for (; nextRow < window.y + window.height && nextRow + drop_ - reach_ <= y; ++nextRow) {
            auto row = casting(canvas, window, nextRow);
            if (bands.empty() || row != lastRow) {
                bands.push_back({nextRow, nextRow, blurred(row)});
                lastRow = std::move(row);
            }
            bands.back().end = nextRow + 1;
        }
        while (bands.size() > 1 && bands.front().end + drop_ + reach_ <= y) {
            bands.pop_front();
        }
        std::fill(shares.begin(), shares.end(), 0.0F);
        for (const Band& band : bands) {
            const auto share = static_cast<float>(inside(band.begin + drop_, y + 0.5) -
                                                  inside(band.end + drop_, y + 0.5));
            std::transform(shares.begin(), shares.end(), band.shares.begin(), shares.begin(),
                           [share](float sum, float part) { return sum + share * part; });
        }
        darken(canvas.row(y), shares);
    }
}

}  // namespace platform::x11
