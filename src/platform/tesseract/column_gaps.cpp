#include "platform/tesseract/column_gaps.h"

namespace platform::tesseract {

namespace {

/// Beyond any page.
constexpr int farAway = 1 << 24;

/// The segments of one row on one side of a gap.
struct Part {
    int segments = 0;
    Box box;

    [[nodiscard]] Part with(const Segment& segment) const {
        return {segments + 1, segments == 0 ? segment.box : box.united(segment.box)};
    }
};

void add(ColumnSide& side, const Part& part) {
    if (part.segments == 0) {
        return;
    }
    side.box = side.rows == 0 ? part.box : side.box.united(part.box);
    ++side.rows;
    side.segments += part.segments;
    side.width += part.box.width();
}

}  // namespace

ColumnGaps::ColumnGaps(double narrowest) : narrowest_(narrowest) {
    gaps_.push_back({-farAway, farAway, {}, {}, 0});
}

void ColumnGaps::add(const TextLine& row) {
    const auto& segments = row.segments;
    // What of the row lies before each segment, and what from it on.
    std::vector<Part> before(segments.size() + 1);
    std::vector<Part> after(segments.size() + 1);
    for (std::size_t index = 0; index < segments.size(); ++index) {
        before[index + 1] = before[index].with(segments[index]);
        const std::size_t fromRight = segments.size() - 1 - index;
        after[fromRight] = after[fromRight + 1].with(segments[fromRight]);
    }
    std::vector<ColumnGap> gaps;
    std::size_t next = 0;
    for (const ColumnGap& gap : gaps_) {
        while (next < segments.size() && segments[next].box.right <= gap.left) {
            ++next;
        }
        // Each segment inside the gap cuts it.
        int left = gap.left;
        for (bool isLast = false; !isLast;) {
            isLast = next == segments.size() || segments[next].box.left >= gap.right;
            const int right = isLast ? gap.right : segments[next].box.left;
            if (right - left > narrowest_) {
                gaps.push_back(gap);
                ColumnGap& cut = gaps.back();
                cut.left = left;
                cut.right = right;
                platform::tesseract::add(cut.leftSide, before[next]);
                platform::tesseract::add(cut.rightSide, after[next]);
                cut.rowsWithBoth += next > 0 && next < segments.size() ? 1 : 0;
            }
            if (!isLast) {
                left = std::max(left, segments[next].box.right);
                // One that reaches beyond the gap may cut the following one, too.
                isLast = segments[next].box.right >= gap.right;
                next += isLast ? 0 : 1;
            }
        }
    }
    gaps_ = std::move(gaps);
}

}  // namespace platform::tesseract
