#include "platform/tesseract/reading_order.h"

#include <map>
#include <optional>

namespace platform::tesseract {

namespace {

constexpr std::size_t fewestRows = 3;
constexpr int differentBackgrounds = 24;
/// In letter heights: a column of prose is about three words wide.
constexpr double narrowestColumn = 16;
/// Prose has one segment in a row; cells have several.
constexpr double mostSegmentsPerRow = 1.25;

/// What stands on one side of a cut.
struct Side {
    int rows = 0;
    int segments = 0;
    double width = 0;
    Box box;

    void add(const std::vector<const Segment*>& parts) {
        if (parts.empty()) {
            return;
        }
        ++rows;
        segments += static_cast<int>(parts.size());
        width += parts.back()->box.right - parts.front()->box.left;
        for (const Segment* part : parts) {
            box = box.area() == 0 ? part->box : box.united(part->box);
        }
    }
    [[nodiscard]] bool readsLikeProse(double letterHeight) const {
        return segments < mostSegmentsPerRow * rows &&
               width / rows > narrowestColumn * letterHeight;
    }
};

/// The colour of the surface that most of a box shows, if one does.
std::optional<Color> surfaceOf(const BackgroundModel& background, const Box& box) {
    // One pixel in sixteen is enough to know a surface.
    constexpr int step = 4;
    constexpr double mostOfIt = 0.6;
    std::map<std::uint32_t, int> counts;
    Color dominant;
    int most = 0;
    int all = 0;
    for (int y = box.top; y < box.bottom; y += step) {
        for (int x = box.left; x < box.right; x += step) {
            const Color color = background.colors().at(x, y);
            // In steps of eight, so that dithering does not scatter.
            const auto key = static_cast<std::uint32_t>((color.red / 8) << 16 |
                                                        (color.green / 8) << 8 | color.blue / 8);
            ++all;
            if (++counts[key] > most) {
                most = counts[key];
                dominant = color;
            }
        }
    }
    return most >= mostOfIt * all ? std::optional(dominant) : std::nullopt;
}

}  // namespace

std::vector<TextLine> ReadingOrder::sort(const std::vector<TextLine>& rows) const {
    std::vector<TextLine> sorted;
    for (std::size_t first = 0; first < rows.size();) {
        int cut = noCut;
        std::size_t end = rows.size();
        for (; end >= first + fewestRows; --end) {
            cut = cutOf(rows, first, end);
            if (cut != noCut) {
                break;
            }
        }
        if (cut == noCut) {
            sorted.push_back(rows[first++]);
            continue;
        }
        for (const bool isLeft : {true, false}) {
            for (std::size_t index = first; index < end; ++index) {
                TextLine part;
                for (const Segment& segment : rows[index].segments) {
                    if ((segment.box.right <= cut) == isLeft) {
                        part.segments.push_back(segment);
                    }
                }
                if (!part.segments.empty()) {
                    sorted.push_back(std::move(part));
                }
            }
        }
        first = end;
    }
    return sorted;
}

int ReadingOrder::cutOf(const std::vector<TextLine>& rows, std::size_t first,
                        std::size_t end) const {
    std::vector<std::pair<int, int>> covered;
    for (std::size_t index = first; index < end; ++index) {
        for (const Segment& segment : rows[index].segments) {
            covered.emplace_back(segment.box.left, segment.box.right);
        }
    }
    std::sort(covered.begin(), covered.end());
    int edge = covered.front().second;
    for (const auto& [left, right] : covered) {
        const int gap = left - edge;
        if (gap > 1.3 * letterHeight_ &&
            separatesColumns(rows, first, end, (left + edge) / 2, gap)) {
            return (left + edge) / 2;
        }
        edge = std::max(edge, right);
    }
    return noCut;
}

bool ReadingOrder::separatesColumns(const std::vector<TextLine>& rows, std::size_t first,
                                    std::size_t end, int cut, int gap) const {
    Side leftSide;
    Side rightSide;
    int rowsWithBoth = 0;
    for (std::size_t index = first; index < end; ++index) {
        std::vector<const Segment*> left;
        std::vector<const Segment*> right;
        for (const Segment& segment : rows[index].segments) {
            (segment.box.right <= cut ? left : right).push_back(&segment);
        }
        leftSide.add(left);
        rightSide.add(right);
        rowsWithBoth += !left.empty() && !right.empty() ? 1 : 0;
    }
    if (leftSide.rows < static_cast<int>(fewestRows) ||
        rightSide.rows < static_cast<int>(fewestRows)) {
        return false;
    }
    const int top = std::min(leftSide.box.top, rightSide.box.top);
    const int bottom = std::max(leftSide.box.bottom, rightSide.box.bottom);
    if (standOnDifferentSurfaces({leftSide.box.left, top, cut, bottom},
                                 {cut, top, rightSide.box.right, bottom})) {
        return true;
    }
    return typeface_ == Typeface::proportional && rowsWithBoth >= 2 && gap > 1.8 * letterHeight_ &&
           leftSide.readsLikeProse(letterHeight_) && rightSide.readsLikeProse(letterHeight_);
}

bool ReadingOrder::standOnDifferentSurfaces(const Box& left, const Box& right) const {
    const auto leftSurface = surfaceOf(background_, left);
    const auto rightSurface = surfaceOf(background_, right);
    return leftSurface && rightSurface &&
           distance(*leftSurface, *rightSurface) > differentBackgrounds;
}

}  // namespace platform::tesseract
