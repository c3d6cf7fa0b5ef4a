#include "platform/tesseract/character_pitch.h"

#include <cmath>

namespace platform::tesseract {

namespace {

constexpr std::size_t fewestDistances = 12;
constexpr double monospacedShare = 0.72;
constexpr double tolerance = 0.13;
constexpr double wholePixels = 0.04;

std::vector<double> neighborDistances(const std::vector<TextLine>& lines, double letterHeight) {
    std::vector<double> distances;
    for (const TextLine& line : lines) {
        for (const Segment& segment : line.segments) {
            double previous = -1;
            for (const Glyph& glyph : TextLine{{segment}}.glyphsFromLeft()) {
                if (glyph.box.height() <= 0.6 * letterHeight ||
                    glyph.box.width() >= 1.6 * letterHeight) {
                    continue;
                }
                if (previous >= 0) {
                    distances.push_back(glyph.box.centerX() - previous);
                }
                previous = glyph.box.centerX();
            }
        }
    }
    return distances;
}

/// Least squares over the distances that are whole multiples of the pitch.
double refine(double pitch, const std::vector<double>& distances) {
    for (int time = 0; time < 2; ++time) {
        double products = 0;
        double squares = 0;
        for (const double distance : distances) {
            const double cells = std::round(distance / pitch);
            // Far multiples round to the wrong one while the pitch is rough.
            if (cells >= 1 && cells <= 8 && std::abs(distance / pitch - cells) < 0.25) {
                products += distance * cells;
                squares += cells * cells;
            }
        }
        pitch = squares > 0 ? products / squares : pitch;
    }
    return pitch;
}

}  // namespace

double measurePitch(const std::vector<TextLine>& lines, double letterHeight) {
    const std::vector<double> distances = neighborDistances(lines, letterHeight);
    if (distances.size() < fewestDistances) {
        return 0;
    }
    std::vector<double> single;
    for (const double distance : distances) {
        if (distance > 0.5 * letterHeight && distance < 2 * letterHeight) {
            single.push_back(distance);
        }
    }
    const double middle = median(std::move(single));
    double best = 0;
    double bestShare = monospacedShare;
    for (double pitch = 0.9 * middle; pitch < 1.1 * middle; pitch += 0.05) {
        int whole = 0;
        for (const double distance : distances) {
            const double cells = distance / pitch;
            whole += cells > 0.5 && std::abs(cells - std::round(cells)) < tolerance ? 1 : 0;
        }
        const double share = whole / static_cast<double>(distances.size());
        if (share > bestShare) {
            bestShare = share;
            best = pitch;
        }
    }
    if (best <= 0) {
        return 0;
    }
    const double pitch = refine(best, distances);
    // Terminals draw in whole pixels.
    return std::abs(pitch - std::round(pitch)) < wholePixels ? std::round(pitch) : pitch;
}

}  // namespace platform::tesseract
