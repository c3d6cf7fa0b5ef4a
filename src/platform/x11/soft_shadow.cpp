#include "platform/x11/soft_shadow.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <utility>

namespace platform::x11 {

namespace {

constexpr float strength = 0.45F;
constexpr double blurPoints = 8;
constexpr double dropPoints = 8;
constexpr std::uint8_t opaque = 0xFF;
/// Every alpha from this on has it, and none below.
constexpr std::uint8_t halfOpaque = 0x80;

/// The first column from `x` on, `end` at the latest, whose alpha lacks one of the bits. Nearly all
/// pixels of a window are opaque, so two at a time.
int endOfRun(const std::uint8_t* row, int x, int end, std::uint8_t bits) {
    const std::array<std::uint8_t, 8> maskBytes{0, 0, 0, bits, 0, 0, 0, bits};
    std::uint64_t mask = 0;
    std::memcpy(&mask, maskBytes.data(), sizeof mask);
    const std::uint8_t* pixel = row + static_cast<std::size_t>(x) * 4;
    for (; x + 2 <= end; x += 2, pixel += 8) {
        std::uint64_t pair = 0;
        std::memcpy(&pair, pixel, sizeof pair);
        if ((pair & mask) != mask) {
            break;
        }
    }
    while (x < end && (pixel[3] & bits) == bits) {
        ++x;
        pixel += 4;
    }
    return x;
}

/// The columns at which a row begins to cast a shadow and ends to, in turn.
std::vector<int> castingEdges(const Canvas& canvas, const NativeRect& window, int y) {
    const std::uint8_t* row = canvas.row(y);
    const int end = window.x + window.width;
    std::vector<int> edges;
    for (int x = window.x; x < end; ++x) {
        const int runEnd = endOfRun(row, x, end, halfOpaque);
        if (runEnd > x) {
            edges.push_back(x);
            edges.push_back(runEnd);
        }
        x = runEnd;
    }
    return edges;
}

/// Puts black of the strength of the share below a pixel.
void darken(std::uint8_t& alpha, float share) {
    // Only the alpha changes.
    const float shadow = 255 * strength * std::clamp(share, 0.0F, 1.0F);
    alpha = static_cast<std::uint8_t>(
        std::lround(static_cast<float>(alpha) + shadow * static_cast<float>(255 - alpha) / 255));
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

std::vector<float> SoftShadow::blurred(const std::vector<int>& edges, int length) const {
    std::vector<float> shares(static_cast<std::size_t>(length));
    // What an edge adds to every column beyond its reach.
    std::vector<float> steps(shares.size() + 1);
    float sign = 1;
    for (const int edge : edges) {
        const int first = std::max(edge - reach_, 0);
        const int last = std::min(edge + reach_, length);
        for (int x = first; x < last; ++x) {
            const int distance = x - edge + reach_;
            shares[static_cast<std::size_t>(x)] +=
                sign * profile_[static_cast<std::size_t>(distance)];
        }
        steps[static_cast<std::size_t>(last)] += sign;
        sign = -sign;
    }
    float step = 0;
    for (std::size_t x = 0; x < shares.size(); ++x) {
        step += steps[x];
        shares[x] += step;
    }
    return shares;
}

void SoftShadow::drawRow(std::uint8_t* row, int y, const std::deque<Band>& bands) const {
    std::vector<float> weights;
    weights.reserve(bands.size());
    for (const Band& band : bands) {
        weights.push_back(static_cast<float>(inside(band.begin + drop_, y + 0.5) -
                                             inside(band.end + drop_, y + 0.5)));
    }
    const int length = bands.empty() ? 0 : static_cast<int>(bands.front().shares.size());
    // What is opaque hides its shadow.
    for (int x = endOfRun(row, 0, length, opaque); x < length;
         x = endOfRun(row, x + 1, length, opaque)) {
        float share = 0;
        for (std::size_t band = 0; band < bands.size(); ++band) {
            share += weights[band] * bands[band].shares[static_cast<std::size_t>(x)];
        }
        darken(row[static_cast<std::size_t>(x) * 4 + 3], share);
    }
}

void SoftShadow::draw(const Canvas& canvas, const NativeRect& window) const {
    std::deque<Band> bands;
    int nextRow = window.y;
    for (int y = 0; y < canvas.height; ++y) {
        // A row is read before its shadow is drawn on it: it is cast downwards.
        for (; nextRow < window.y + window.height && nextRow + drop_ - reach_ <= y; ++nextRow) {
            auto edges = castingEdges(canvas, window, nextRow);
            if (bands.empty() || edges != bands.back().edges) {
                auto shares = blurred(edges, canvas.width);
                bands.push_back({nextRow, nextRow, std::move(edges), std::move(shares)});
            }
            bands.back().end = nextRow + 1;
        }
        while (bands.size() > 1 && bands.front().end + drop_ + reach_ <= y) {
            bands.pop_front();
        }
        drawRow(canvas.row(y), y, bands);
    }
}

}  // namespace platform::x11
