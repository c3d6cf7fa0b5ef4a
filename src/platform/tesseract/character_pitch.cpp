#include "platform/tesseract/character_pitch.h"

#include <algorithm>
#include <cmath>

namespace platform::tesseract {

namespace {

constexpr std::size_t fewestDistances = 12;
constexpr double monospacedShare = 0.72;
constexpr double tolerance = 0.13;
constexpr double wholePixels = 0.04;
/// So many lines of one pitch are no coincidence, and so far may their measures differ.
constexpr int fewestLines = 2;
constexpr double samePitch = 0.02;
/// Of the distances in a line of a monospaced page: chance gives a quarter.
constexpr double leastShareOnPage = 0.5;

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

double shareOnPitch(const std::vector<double>& distances, double pitch) {
    const auto whole = std::count_if(distances.begin(), distances.end(), [pitch](double distance) {
        const double cells = distance / pitch;
        return cells > 0.5 && std::abs(cells - std::round(cells)) < tolerance;
    });
    return static_cast<double>(whole) / static_cast<double>(distances.size());
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
        const double share = shareOnPitch(distances, pitch);
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

std::vector<double> pitchesOf(const std::vector<TextLine>& lines, double pagePitch,
                              double letterHeight) {
    std::vector<std::vector<double>> distances;
    std::vector<double> measured;
    for (const TextLine& line : lines) {
        distances.push_back(neighborDistances({line}, letterHeight));
        measured.push_back(measurePitch({line}, letterHeight));
    }
    // That of the first of several lines, so that all of them have one; 0 for a line on its own.
    const auto sharedPitch = [&](double pitch) {
        const auto isSame = [pitch](double other) {
            return std::abs(other - pitch) <= samePitch * pitch;
        };
        const bool hasCompany =
            pitch > 0 && std::count_if(measured.begin(), measured.end(), isSame) >= fewestLines;
        return hasCompany ? *std::find_if(measured.begin(), measured.end(), isSame) : 0;
    };
    std::vector<double> pitches;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const bool isShort = distances[index].size() < fewestDistances;
        const bool isOnPage =
            pagePitch > 0 &&
            (isShort || shareOnPitch(distances[index], pagePitch) >= leastShareOnPage);
        pitches.push_back(isOnPage ? pagePitch : sharedPitch(measured[index]));
    }
    return pitches;
}

}  // namespace platform::tesseract
