#include "platform/tesseract/screen_text_reader.h"

#include <algorithm>
#include <map>

#include "platform/tesseract/cell_consensus.h"
#include "platform/tesseract/characters.h"
#include "platform/tesseract/figures.h"
#include "platform/tesseract/line_picture.h"
#include "platform/tesseract/page_analysis.h"
#include "platform/tesseract/reading_merge.h"
#include "platform/tesseract/reading_time.h"
#include "platform/tesseract/scale_merge.h"
#include "platform/tesseract/spacing.h"
#include "platform/tesseract/writing_decision.h"

namespace platform::tesseract {

namespace {

/// One or two characters that the engine is this unsure of are a speck.
constexpr int sureConfidence = 40;
constexpr std::size_t speckLength = 2;

/// Below this a line is read a second time, drawn wider and higher, and the surer words count: it
/// takes a sixth more time on pictures of real programs, and above it hardly anything changes.
constexpr int doubtfulConfidence = 83;
constexpr LinePictureStyle secondStyle{.narrowing = 1.1, .margin = 0.15};

/// Letters of 6 to 50 pixels are read as they are; with these, up to 450 pixels.
constexpr int reductions[] = {3, 9};
/// Near the x-height, in reduced pixels: smaller letters were read on the larger picture.
constexpr double leastReducedLetter = 8;
/// In pixels: no letter is read in less.
constexpr int smallestReduced = 12;

/// About as long as a look at so many pixels takes what follows the reading of a line.
constexpr int pixelsOfLine = 4000;

bool isSpeck(const LineReading& reading) {
    std::vector<std::string> characters = charactersOf(reading.text);
    std::erase(characters, " ");
    return reading.confidence < sureConfidence && characters.size() <= speckLength;
}

/// As a multiple of its height.
double lengthOf(const TextLine& line, const LineMetrics& metrics) {
    double width = 0;
    for (const Segment& segment : line.segments) {
        width += segment.box.width();
    }
    return width / (metrics.ascent + metrics.descent);
}

Box boxOf(const TextLine& line) {
    Box box = line.segments.front().box;
    for (const Segment& segment : line.segments) {
        box = box.united(segment.box);
    }
    return box;
}

/// What the page made of a reading, what the engine read, and what it read otherwise; each once.
std::vector<std::string> rankedCandidates(const std::string& corrected,
                                          const LineReading& reading) {
    std::vector<std::string> ranked{corrected};
    const auto add = [&](const std::string& text) {
        if (!text.empty() && std::find(ranked.begin(), ranked.end(), text) == ranked.end()) {
            ranked.push_back(text);
        }
    };
    add(reading.text);
    for (const std::string& alternative : reading.alternatives) {
        add(alternative);
    }
    return ranked;
}

}  // namespace

ScreenTextReader::ScreenTextReader(std::unique_ptr<LineCrew> crew) : crew_(std::move(crew)) {}
ScreenTextReader::~ScreenTextReader() = default;

base::Result<std::unique_ptr<ScreenTextReader>> ScreenTextReader::create(
    const std::vector<std::string>& languages, CrewSize threads) {
    auto crew = LineCrew::create(languages, threads);
    if (!crew) {
        return crew.error();
    }
    return std::unique_ptr<ScreenTextReader>(new ScreenTextReader(std::move(crew.value())));
}

base::Result<std::vector<capture::TextObservation>> ScreenTextReader::read(
    const base::Image& image) {
    return read(image, longestReading(std::int64_t{image.width()} * image.height()));
}

base::Result<std::vector<capture::TextObservation>> ScreenTextReader::read(
    const base::Image& image, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    if (image.isEmpty()) {
        return std::vector<capture::TextObservation>();
    }
    if (std::int64_t{image.width()} * image.height() > largestPicture) {
        return base::Error{base::ErrorKind::invalid,
                           "The picture is too large for its text to be recognised"};
    }
    const ThreadPair::Use use(crew_->threads());
    auto lines = readOneSize(image, {0, end});
    if (!lines) {
        return lines.error();
    }
    for (const int factor : reductions) {
        if (std::min(image.width(), image.height()) < factor * smallestReduced) {
            break;
        }
        auto larger = readOneSize(reduced(image, factor, lines.value()), {leastReducedLetter, end});
        if (!larger) {
            return larger.error();
        }
        mergeLarger(lines.value(), std::move(larger.value()), factor);
    }
    std::vector<capture::TextObservation> observations;
    for (ReadLine& line : lines.value()) {
        observations.push_back(std::move(line.observation));
    }
    return observations;
}

base::Result<std::vector<ReadLine>> ScreenTextReader::readOneSize(const base::Image& image,
                                                                  Bounds bounds) {
    const PageAnalysis page(image);
    if (page.lines().empty()) {
        return std::vector<ReadLine>();
    }
    auto readings = readLines(page, bounds);
    if (!readings) {
        return readings.error();
    }
    return observe(page, readings.value());
}

base::Result<std::vector<LineReading>> ScreenTextReader::readLines(const PageAnalysis& page,
                                                                   Bounds bounds) {
    const auto& lines = page.lines();
    const auto& metrics = page.metrics();
    const LinePainter painter(page.ink(), page.components(), page.letterHeight());
    std::vector<double> lengths;
    const auto isTooSmall = [&](std::size_t index) {
        return metrics[index].letterHeight < bounds.letterHeight;
    };
    for (std::size_t index = 0; index < lines.size(); ++index) {
        lengths.push_back(isTooSmall(index) ? 0 : lengthOf(lines[index], metrics[index]));
    }
    const auto readLine = [&](LineReader& reader, std::size_t index) {
        if (isTooSmall(index)) {
            return LineReading{};
        }
        LineReading reading = reader.read(painter.paint(lines[index], metrics[index], {}));
        if (reading.confidence < doubtfulConfidence) {
            reading = mergedReading(
                reading, reader.read(painter.paint(lines[index], metrics[index], secondStyle)));
        }
        return reading;
    };
    const auto left = bounds.end - std::chrono::steady_clock::now();
    return crew_->readAll(lengths, readLine,
                          std::chrono::duration_cast<std::chrono::milliseconds>(left));
}

std::vector<ReadLine> ScreenTextReader::observe(const PageAnalysis& page,
                                                std::vector<LineReading>& readings) {
    const auto& lines = page.lines();
    const auto& metrics = page.metrics();
    WritingDecision decision(page.ink(), page.typeface());
    for (std::size_t index = 0; index < lines.size(); ++index) {
        decision.add(lines[index], page.grounds()[index], readings[index]);
        if (isSpeck(readings[index])) {
            readings[index].text.clear();
        }
    }
    Spacing spacing(page.ink(), page.letterHeight());
    std::vector<Spacing::Line> spaced(lines.size());
    shareBands(static_cast<int>(lines.size()), pixelsOfLine, [&](int first, int end) {
        for (auto index = static_cast<std::size_t>(first); index < static_cast<std::size_t>(end);
             ++index) {
            if (page.pitches()[index] <= 0) {
                spaced[index] = spacing.look(lines[index], metrics[index], readings[index].text);
            }
        }
    });
    // Lines of one pitch teach each other.
    std::map<double, CellConsensus> cells;
    std::vector<std::size_t> places;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const double pitch = page.pitches()[index];
        if (pitch > 0) {
            const auto group = cells.try_emplace(pitch, page.ink(), pitch, page.letterHeight());
            places.push_back(
                group.first->second.add(lines[index], metrics[index], readings[index]));
        } else {
            places.push_back(spacing.add(std::move(spaced[index])));
        }
    }
    std::vector<ReadLine> read;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        if (!decision.isWriting(index)) {
            continue;
        }
        const auto group = cells.find(page.pitches()[index]);
        const std::string text =
            withFigures(group == cells.end() ? spacing.corrected(places[index])
                                             : group->second.corrected(places[index]));
        if (!text.empty()) {
            read.push_back({boxOf(lines[index]),
                            metrics[index].letterHeight,
                            1,
                            readings[index].confidence,
                            lettersIn(text),
                            page.grounds()[index],
                            {rankedCandidates(text, readings[index])}});
        }
    }
    return read;
}

}  // namespace platform::tesseract
