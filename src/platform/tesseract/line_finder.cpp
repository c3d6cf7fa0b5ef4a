#include "platform/tesseract/line_finder.h"

#include <cmath>
#include <limits>

namespace platform::tesseract {

namespace {

/// Shorter than this share of the letter height is a dot, an accent, a dash or a quote.
constexpr double markShare = 0.6;

void add(Segment& segment, const Glyph& glyph) {
    segment.box = segment.box.united(glyph.box);
    segment.glyphs.push_back(glyph);
}

}  // namespace

std::vector<TextLine> LineFinder::find(std::vector<Glyph> glyphs) const {
    std::sort(glyphs.begin(), glyphs.end(),
              [](const Glyph& one, const Glyph& other) { return one.box.left < other.box.left; });
    std::vector<Glyph> letters;
    std::vector<Glyph> marks;
    for (const Glyph& glyph : glyphs) {
        (glyph.box.height() < markShare * letterHeight_ ? marks : letters).push_back(glyph);
    }
    std::vector<Segment> segments = chain(letters);
    attachMarks(marks, segments);
    mergeOverlapping(segments);
    return rowsOf(std::move(segments));
}

std::vector<Segment> LineFinder::chain(const std::vector<Glyph>& letters) const {
    std::vector<Segment> segments;
    for (const Glyph& glyph : letters) {
        Segment* best = nullptr;
        double bestShare = 0.5;
        for (Segment& segment : segments) {
            if (glyph.box.left - segment.box.right > largestGap() ||
                areDivided(segment.box, glyph.box)) {
                continue;
            }
            const double lower = std::min(glyph.box.height(), segment.box.height());
            const double higher = std::max(glyph.box.height(), segment.box.height());
            const double share = glyph.box.sharedRows(segment.box) / lower;
            const double together = glyph.box.united(segment.box).height();
            if (share > bestShare && together < 2.1 * std::max(letterHeight_, 0.75 * higher)) {
                bestShare = share;
                best = &segment;
            }
        }
        if (best == nullptr) {
            segments.push_back({glyph.box, {glyph}});
        } else {
            add(*best, glyph);
        }
    }
    return segments;
}

void LineFinder::attachMarks(const std::vector<Glyph>& marks,
                             std::vector<Segment>& segments) const {
    for (const Glyph& mark : marks) {
        Segment* nearest = nullptr;
        double least = std::numeric_limits<double>::max();
        for (Segment& segment : segments) {
            const double aside = std::max(0, -mark.box.sharedColumns(segment.box));
            const double middle = mark.box.centerY();
            const double above = std::max(0.0, segment.box.top - middle);
            const double below = std::max(0.0, middle - segment.box.bottom);
            if (aside > largestGap() || std::max(above, below) > 0.55 * letterHeight_ ||
                areDivided(segment.box, mark.box) || !isBesideBaseline(mark, segment)) {
                continue;
            }
            // Low lines and commas below a row are commoner than accents above capitals.
            const double far = 0.5 * aside + 2 * below + 4 * above;
            if (far < least) {
                least = far;
                nearest = &segment;
            }
        }
        if (nearest != nullptr) {
            add(*nearest, mark);
        } else if (mark.box.width() >= 3 || mark.pixelCount >= 6) {
            segments.push_back({mark.box, {mark}});
        }
    }
}

bool LineFinder::isBesideBaseline(const Glyph& mark, const Segment& segment) const {
    std::vector<double> bottoms;
    for (const Glyph& glyph : segment.glyphs) {
        if (glyph.box.height() >= markShare * letterHeight_) {
            bottoms.push_back(glyph.box.bottom);
        }
    }
    const double below = mark.box.centerY() - median(std::move(bottoms));
    return below <= 0.6 * letterHeight_ && below >= -2.3 * letterHeight_;
}

void LineFinder::mergeOverlapping(std::vector<Segment>& segments) const {
    const auto belongTogether = [this](const Segment& one, const Segment& other) {
        return one.box.sharedRows(other.box) >
                   0.5 * std::min(one.box.height(), other.box.height()) &&
               -one.box.sharedColumns(other.box) <= largestGap() && !areDivided(one.box, other.box);
    };
    for (bool hasMerged = true; hasMerged;) {
        hasMerged = false;
        for (std::size_t index = 0; index < segments.size(); ++index) {
            for (std::size_t other = index + 1; other < segments.size();) {
                if (!belongTogether(segments[index], segments[other])) {
                    ++other;
                    continue;
                }
                for (const Glyph& glyph : segments[other].glyphs) {
                    add(segments[index], glyph);
                }
                segments[other] = std::move(segments.back());
                segments.pop_back();
                hasMerged = true;
            }
        }
    }
}

bool LineFinder::areDivided(const Box& one, const Box& other) const {
    const int left = std::min(one.right, other.right);
    const int right = std::max(one.left, other.left);
    const int top = std::max(one.top, other.top);
    const int bottom = std::min(one.bottom, other.bottom);
    return std::any_of(dividers_.begin(), dividers_.end(), [&](const Box& divider) {
        return divider.left >= left - 1 && divider.right <= right + 1 && divider.top <= top + 2 &&
               divider.bottom >= bottom - 2;
    });
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
