#include "platform/tesseract/line_finder.h"

#include <cmath>
#include <limits>

namespace platform::tesseract {

namespace {

/// Shorter than this share of the letter height is a dot, an accent, a dash or a quote.
constexpr double markShare = 0.6;
/// In letter heights: a cell of the index of segments, a few words wide.
constexpr double cellWidth = 16;
/// In letter heights: how far above or below a segment its marks may have their middle.
constexpr double markReach = 0.55;

void add(Segment& segment, const Glyph& glyph) {
    segment.box = segment.box.united(glyph.box);
    segment.glyphs.push_back(glyph);
}

Box grown(const Box& box, int sideways, int upright) {
    return {box.left - sideways, box.top - upright, box.right + sideways, box.bottom + upright};
}

}  // namespace

LineFinder::LineFinder(double letterHeight, std::vector<Box> dividers)
    : letterHeight_(letterHeight), dividers_(std::move(dividers)) {
    std::sort(dividers_.begin(), dividers_.end(),
              [](const Box& one, const Box& other) { return one.left < other.left; });
}

std::vector<TextLine> LineFinder::find(std::vector<Glyph> glyphs) const {
    if (glyphs.empty()) {
        return {};
    }
    std::sort(glyphs.begin(), glyphs.end(),
              [](const Glyph& one, const Glyph& other) { return one.box.left < other.box.left; });
    std::vector<Glyph> letters;
    std::vector<Glyph> marks;
    Box page = glyphs.front().box;
    for (const Glyph& glyph : glyphs) {
        page = page.united(glyph.box);
        (glyph.box.height() < markShare * letterHeight_ ? marks : letters).push_back(glyph);
    }
    BoxIndex index(page, static_cast<int>(cellWidth * letterHeight_),
                   static_cast<int>(letterHeight_));
    std::vector<Segment> segments = chain(letters, index);
    attachMarks(marks, segments, index);
    mergeOverlapping(segments, index);
    return rowsOf(std::move(segments));
}

std::vector<Segment> LineFinder::chain(const std::vector<Glyph>& letters, BoxIndex& index) const {
    std::vector<Segment> segments;
    const int gap = static_cast<int>(largestGap());
    for (const Glyph& glyph : letters) {
        std::size_t best = segments.size();
        double bestShare = 0.5;
        for (const std::size_t number : index.near(grown(glyph.box, gap, 0))) {
            const Segment& segment = segments[number];
            const double lower = std::min(glyph.box.height(), segment.box.height());
            const double higher = std::max(glyph.box.height(), segment.box.height());
            const double share = glyph.box.sharedRows(segment.box) / lower;
            const double together = glyph.box.united(segment.box).height();
            if (share > bestShare && glyph.box.left - segment.box.right <= largestGap() &&
                together < 2.1 * std::max(letterHeight_, 0.75 * higher) &&
                !areDivided(segment.box, glyph.box)) {
                bestShare = share;
                best = number;
            }
        }
        if (best == segments.size()) {
            segments.push_back({glyph.box, {glyph}});
        } else {
            add(segments[best], glyph);
        }
        index.put(best, segments[best].box);
    }
    return segments;
}

void LineFinder::attachMarks(const std::vector<Glyph>& marks, std::vector<Segment>& segments,
                             BoxIndex& index) const {
    std::vector<double> baselines;
    baselines.reserve(segments.size());
    for (const Segment& segment : segments) {
        baselines.push_back(baselineOf(segment));
    }
    // Of several marks in front of a word, the last one is near it and the others near each other.
    const std::vector<Glyph> leftOver = withoutNeighbors(
        withoutNeighbors(marks, segments, baselines, index), segments, baselines, index);
    for (const Glyph& mark : leftOver) {
        const std::size_t nearest = nearestTo(mark, segments, baselines, index);
        if (nearest != segments.size()) {
            add(segments[nearest], mark);
        } else if (mark.box.width() >= 3 || mark.pixelCount >= 6) {
            segments.push_back({mark.box, {mark}});
            baselines.push_back(baselineOf(segments.back()));
        } else {
            continue;
        }
        index.put(nearest, segments[nearest].box);
    }
}

std::vector<Glyph> LineFinder::withoutNeighbors(const std::vector<Glyph>& marks,
                                                std::vector<Segment>& segments,
                                                const std::vector<double>& baselines,
                                                BoxIndex& index) const {
    std::vector<Glyph> others;
    for (const Glyph& mark : marks) {
        const std::size_t nearest = nearestTo(mark, segments, baselines, index);
        if (nearest == segments.size()) {
            others.push_back(mark);
            continue;
        }
        add(segments[nearest], mark);
        index.put(nearest, segments[nearest].box);
    }
    std::reverse(others.begin(), others.end());
    return others;
}

std::size_t LineFinder::nearestTo(const Glyph& mark, const std::vector<Segment>& segments,
                                  const std::vector<double>& baselines,
                                  const BoxIndex& index) const {
    const int aroundX = static_cast<int>(largestGap()) + 1;
    const int aroundY = static_cast<int>(markReach * letterHeight_) + 1;
    std::size_t nearest = segments.size();
    double least = std::numeric_limits<double>::max();
    for (const std::size_t number : index.near(grown(mark.box, aroundX, aroundY))) {
        const Segment& segment = segments[number];
        const double aside = std::max(0, -mark.box.sharedColumns(segment.box));
        const double middle = mark.box.centerY();
        const double above = std::max(0.0, segment.box.top - middle);
        const double below = std::max(0.0, middle - segment.box.bottom);
        // Low lines and commas below a row are commoner than accents above capitals.
        const double far = 0.5 * aside + 2 * below + 4 * above;
        if (far < least && aside <= largestGap() &&
            std::max(above, below) <= markReach * letterHeight_ &&
            isBesideBaseline(mark, baselines[number]) && !areDivided(segment.box, mark.box)) {
            least = far;
            nearest = number;
        }
    }
    return nearest;
}

double LineFinder::baselineOf(const Segment& segment) const {
    std::vector<double> bottoms;
    for (const Glyph& glyph : segment.glyphs) {
        if (glyph.box.height() >= markShare * letterHeight_) {
            bottoms.push_back(glyph.box.bottom);
        }
    }
    return median(std::move(bottoms));
}

bool LineFinder::isBesideBaseline(const Glyph& mark, double baseline) const {
    const double below = mark.box.centerY() - baseline;
    return below <= 0.6 * letterHeight_ && below >= -2.3 * letterHeight_;
}

void LineFinder::mergeOverlapping(std::vector<Segment>& segments, BoxIndex& index) const {
    const auto belongTogether = [this](const Segment& one, const Segment& other) {
        return one.box.sharedRows(other.box) >
                   0.5 * std::min(one.box.height(), other.box.height()) &&
               -one.box.sharedColumns(other.box) <= largestGap() && !areDivided(one.box, other.box);
    };
    const int gap = static_cast<int>(largestGap()) + 1;
    for (std::size_t number = 0; number < segments.size(); ++number) {
        // One that has grown may reach others, those before it included.
        for (bool hasGrown = !segments[number].glyphs.empty(); hasGrown;) {
            hasGrown = false;
            for (const std::size_t other : index.near(grown(segments[number].box, gap, 0))) {
                if (other == number || segments[other].glyphs.empty() ||
                    !belongTogether(segments[number], segments[other])) {
                    continue;
                }
                for (const Glyph& glyph : segments[other].glyphs) {
                    add(segments[number], glyph);
                }
                segments[other].glyphs.clear();
                hasGrown = true;
            }
            index.put(number, segments[number].box);
        }
    }
    std::erase_if(segments, [](const Segment& segment) { return segment.glyphs.empty(); });
}

bool LineFinder::areDivided(const Box& one, const Box& other) const {
    const int left = std::min(one.right, other.right);
    const int right = std::max(one.left, other.left);
    const int top = std::max(one.top, other.top);
    const int bottom = std::min(one.bottom, other.bottom);
    const auto first =
        std::lower_bound(dividers_.begin(), dividers_.end(), left - 1,
                         [](const Box& divider, int position) { return divider.left < position; });
    for (auto divider = first; divider != dividers_.end() && divider->left <= right + 1;
         ++divider) {
        if (divider->right <= right + 1 && divider->top <= top + 2 &&
            divider->bottom >= bottom - 2) {
            return true;
        }
    }
    return false;
}

std::vector<TextLine> LineFinder::rowsOf(std::vector<Segment> segments) {
    std::sort(segments.begin(), segments.end(), [](const Segment& one, const Segment& other) {
        return one.box.centerY() < other.box.centerY();
    });
    // Rows are met from the top, so that only the last few can still take a segment.
    constexpr std::size_t openRows = 6;
    std::vector<TextLine> rows;
    for (Segment& segment : segments) {
        TextLine* home = nullptr;
        const std::size_t oldest = rows.size() > openRows ? rows.size() - openRows : 0;
        for (std::size_t index = rows.size(); index-- > oldest && home == nullptr;) {
            bool shares = false;
            bool clashes = false;
            for (const Segment& other : rows[index].segments) {
                shares |= segment.box.sharedRows(other.box) >
                          0.5 * std::min(segment.box.height(), other.box.height());
                clashes |= segment.box.sharedColumns(other.box) > 2;
            }
            if (shares && !clashes) {
                home = &rows[index];
            }
        }
        if (home == nullptr) {
            rows.push_back({{std::move(segment)}});
        } else {
            home->segments.push_back(std::move(segment));
        }
    }
    const auto middle = [](const TextLine& row) {
        double sum = 0;
        for (const Segment& segment : row.segments) {
            sum += segment.box.centerY();
        }
        return sum / static_cast<double>(row.segments.size());
    };
    std::stable_sort(rows.begin(), rows.end(), [&](const TextLine& one, const TextLine& other) {
        return middle(one) < middle(other);
    });
    for (TextLine& row : rows) {
        std::sort(
            row.segments.begin(), row.segments.end(),
            [](const Segment& one, const Segment& other) { return one.box.left < other.box.left; });
    }
    return rows;
}

}  // namespace platform::tesseract
