#include "platform/x11/paint_plan.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "platform/x11/figure_grid.h"
#include "platform/x11/native_region.h"

namespace platform::x11 {

namespace {

/// What is to be done with one cell, or with several that lie together.
struct Work {
    CellContent::Kind kind = CellContent::Kind::uniform;
    ArgbPixel pixel = 0;
    Ground ground = Ground::painted;
    friend bool operator==(const Work&, const Work&) = default;
};

struct WorkRect {
    NativeRect rect;
    Work work;
};

/// Joins equal cells that lie side by side, then equal rows of them.
class WorkCollector {
  public:
    void add(const NativeRect& cell, const Work& work) {
        if (!row_.empty()) {
            WorkRect& last = row_.back();
            if (last.work == work && last.rect.x + last.rect.width == cell.x) {
                last.rect.width += cell.width;
                return;
            }
        }
        row_.push_back({cell, work});
    }

    void finishRow() {
        std::vector<std::size_t> open;
        for (const WorkRect& run : row_) {
            const auto above = std::find_if(open_.begin(), open_.end(), [&](std::size_t index) {
                const WorkRect& other = rects_[index];
                return other.work == run.work && other.rect.x == run.rect.x &&
                       other.rect.width == run.rect.width &&
                       other.rect.y + other.rect.height == run.rect.y;
            });
            if (above != open_.end()) {
                rects_[*above].rect.height += run.rect.height;
                open.push_back(*above);
            } else {
                open.push_back(rects_.size());
                rects_.push_back(run);
            }
        }
        open_ = std::move(open);
        row_.clear();
    }

    [[nodiscard]] const std::vector<WorkRect>& rects() const { return rects_; }

  private:
    std::vector<WorkRect> row_;
    std::vector<WorkRect> rects_;
    /// Those of `rects_` that reach down to the row before.
    std::vector<std::size_t> open_;
};

bool isSameDetail(const FigureGrid& before, const FigureGrid& after, std::size_t column,
                  std::size_t row) {
    std::vector<const Figure*> first;
    std::vector<const Figure*> second;
    before.collect(column, row, first);
    after.collect(column, row, second);
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](const Figure* one, const Figure* other) { return *one == *other; });
}

std::optional<Work> changeOf(const FigureGrid& before, const FigureGrid& after, std::size_t column,
                             std::size_t row) {
    const CellContent was = before.content(column, row);
    const CellContent is = after.content(column, row);
    if (was.kind == is.kind) {
        const bool isSame = is.kind == CellContent::Kind::uniform
                                ? was.pixel == is.pixel
                                : isSameDetail(before, after, column, row);
        if (isSame) {
            return std::nullopt;
        }
    }
    const bool wasBare = was.kind == CellContent::Kind::uniform && was.pixel == 0;
    return Work{is.kind, is.pixel, wasBare ? Ground::bare : Ground::painted};
}

NativeRect cellRect(const AxisCuts& columns, const AxisCuts& rows, std::size_t column,
                    std::size_t row) {
    return {columns.start(column), rows.start(row), columns.end(column) - columns.start(column),
            rows.end(row) - rows.start(row)};
}

template <typename Decide>
std::vector<WorkRect> collectWork(const AxisCuts& columns, const AxisCuts& rows, Decide decide) {
    WorkCollector collector;
    for (std::size_t row = 0; row < rows.bandCount(); ++row) {
        for (std::size_t column = 0; column < columns.bandCount(); ++column) {
            if (const std::optional<Work> work = decide(column, row)) {
                collector.add(cellRect(columns, rows, column, row), *work);
            }
        }
        collector.finishRow();
    }
    return collector.rects();
}

bool touches(const RoundedBox& box, const NativeRect& rect) {
    return box.left < rect.x + rect.width && box.right > rect.x && box.top < rect.y + rect.height &&
           box.bottom > rect.y;
}

PaintPlan::Tile tileOf(const std::vector<Figure>& figures, const WorkRect& work) {
    std::vector<Figure> inside;
    std::copy_if(figures.begin(), figures.end(), std::back_inserter(inside),
                 [&](const Figure& figure) { return touches(figure.outer, work.rect); });
    PaintPlan::Tile tile{work.rect, {}, work.work.ground};
    tile.pixels.reserve(static_cast<std::size_t>(work.rect.width) *
                        static_cast<std::size_t>(work.rect.height));
    for (int y = work.rect.y; y < work.rect.y + work.rect.height; ++y) {
        for (int x = work.rect.x; x < work.rect.x + work.rect.width; ++x) {
            tile.pixels.push_back(pixelAt(inside, x, y));
        }
    }
    return tile;
}

PaintPlan planOf(const std::vector<WorkRect>& rects, const std::vector<Figure>& figures) {
    PaintPlan plan;
    for (const WorkRect& work : rects) {
        switch (work.work.kind) {
            case CellContent::Kind::uniform:
                plan.areas.push_back({work.rect, work.work.pixel, work.work.ground});
                break;
            case CellContent::Kind::detailed:
                plan.tiles.push_back(tileOf(figures, work));
                break;
        }
    }
    return plan;
}

}  // namespace

NativeRect PaintPlan::bounds() const {
    NativeRect bounds{};
    for (const Area& area : areas) {
        bounds = boundingBox(bounds, area.rect);
    }
    for (const Tile& tile : tiles) {
        bounds = boundingBox(bounds, tile.rect);
    }
    return bounds;
}

ArgbPixel pixelAt(const std::vector<Figure>& figures, int x, int y) {
    BlendedColor blended;
    for (const Figure& figure : figures) {
        const double coverage = figureCoverage(figure, x, y);
        if (coverage > 0) {
            blended.apply(figure, coverage);
        }
    }
    return blended.pixel();
}

PaintPlan planChange(const std::vector<Figure>& before, const std::vector<Figure>& after,
                     const NativeRect& clip) {
    if (clip.isEmpty()) {
        return {};
    }
    AxisCuts columns(AxisCuts::Axis::x, clip.x, clip.x + clip.width);
    AxisCuts rows(AxisCuts::Axis::y, clip.y, clip.y + clip.height);
    for (const auto* figures : {&before, &after}) {
        columns.add(*figures);
        rows.add(*figures);
    }
    columns.finish();
    rows.finish();
    const FigureGrid was(before, columns, rows);
    const FigureGrid is(after, columns, rows);
    return planOf(collectWork(columns, rows,
                              [&](std::size_t column, std::size_t row) {
                                  return changeOf(was, is, column, row);
                              }),
                  after);
}

PaintPlan planRepair(const std::vector<Figure>& figures, const NativeRect& clip) {
    if (clip.isEmpty()) {
        return {};
    }
    AxisCuts columns(AxisCuts::Axis::x, clip.x, clip.x + clip.width);
    AxisCuts rows(AxisCuts::Axis::y, clip.y, clip.y + clip.height);
    columns.add(figures);
    rows.add(figures);
    columns.finish();
    rows.finish();
    const FigureGrid grid(figures, columns, rows);
    const auto decide = [&](std::size_t column, std::size_t row) -> std::optional<Work> {
        const CellContent content = grid.content(column, row);
        if (content.kind == CellContent::Kind::uniform && content.pixel == 0) {
            return std::nullopt;
        }
        return Work{content.kind, content.pixel, Ground::painted};
    };
    return planOf(collectWork(columns, rows, decide), figures);
}

}  // namespace platform::x11
