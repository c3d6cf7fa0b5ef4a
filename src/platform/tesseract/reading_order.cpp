#include "platform/tesseract/reading_order.h"

namespace platform::tesseract {

namespace {

constexpr int fewestRows = 3;
/// No block is longer: what keeps a page of specks from being compared row by row with itself.
constexpr std::size_t mostRows = 2000;
constexpr int differentBackgrounds = 24;
/// In letter heights: a column of prose is about three words wide.
constexpr double narrowestColumn = 16;
/// Prose has one segment in a row; cells have several.
constexpr double mostSegmentsPerRow = 1.25;
/// In letter heights: columns stand at least so far apart, columns of prose further.
constexpr double narrowestGap = 1.3;
constexpr double narrowestProseGap = 1.8;

bool readsLikeProse(const ColumnSide& side, double letterHeight) {
    return side.segments < mostSegmentsPerRow * side.rows &&
           side.width / side.rows > narrowestColumn * letterHeight;
}

}  // namespace

std::vector<TextLine> ReadingOrder::sort(const std::vector<TextLine>& rows) const {
    std::vector<TextLine> sorted;
    for (std::size_t first = 0; first < rows.size();) {
        const std::optional<Block> block = blockFrom(rows, first);
        if (!block) {
            sorted.push_back(rows[first++]);
            continue;
        }
        for (const bool isLeft : {true, false}) {
            for (std::size_t index = first; index < block->end; ++index) {
                TextLine part;
                for (const Segment& segment : rows[index].segments) {
                    if ((segment.box.right <= block->cut) == isLeft) {
                        part.segments.push_back(segment);
                    }
                }
                if (!part.segments.empty()) {
                    sorted.push_back(std::move(part));
                }
            }
        }
        first = block->end;
    }
    return sorted;
}

std::optional<ReadingOrder::Block> ReadingOrder::blockFrom(const std::vector<TextLine>& rows,
                                                           std::size_t first) const {
    std::optional<Block> longest;
    ColumnGaps gaps(narrowestGap * letterHeight_);
    const std::size_t last = std::min(rows.size(), first + mostRows);
    for (std::size_t index = first; index < last; ++index) {
        gaps.add(rows[index]);
        const auto cut =
            std::find_if(gaps.all().begin(), gaps.all().end(),
                         [this](const ColumnGap& gap) { return separatesColumns(gap); });
        if (cut != gaps.all().end()) {
            longest = Block{index + 1, cut->middle()};
        }
    }
    return longest;
}

bool ReadingOrder::separatesColumns(const ColumnGap& gap) const {
    if (gap.leftSide.rows < fewestRows || gap.rightSide.rows < fewestRows) {
        return false;
    }
    if (typeface_ == Typeface::proportional && gap.rowsWithBoth >= 2 &&
        gap.width() > narrowestProseGap * letterHeight_ &&
        readsLikeProse(gap.leftSide, letterHeight_) &&
        readsLikeProse(gap.rightSide, letterHeight_)) {
        return true;
    }
    const int top = std::min(gap.leftSide.box.top, gap.rightSide.box.top);
    const int bottom = std::max(gap.leftSide.box.bottom, gap.rightSide.box.bottom);
    const auto left = surfaces_.dominantIn({gap.leftSide.box.left, top, gap.middle(), bottom});
    const auto right = surfaces_.dominantIn({gap.middle(), top, gap.rightSide.box.right, bottom});
    return left && right && distance(*left, *right) > differentBackgrounds;
}

}  // namespace platform::tesseract
