#include "platform/x11/figure_grid.h"

#include <algorithm>
#include <cmath>

namespace platform::x11 {

namespace {

struct Span {
    double start;
    double end;
};

Span spanOf(const RoundedBox& box, AxisCuts::Axis axis) {
    return axis == AxisCuts::Axis::x ? Span{box.left, box.right} : Span{box.top, box.bottom};
}

bool isInCorner(const RoundedBox& box, AxisCuts::Axis axis, std::int32_t position) {
    if (box.isEmpty() || box.radius <= 0) {
        return false;
    }
    const Span span = spanOf(box, axis);
    return position < span.start + box.radius || position + 1 > span.end - box.radius;
}

}  // namespace

void BlendedColor::apply(const Figure& figure, double coverage) {
    const double source =
        figure.effect == FigureEffect::clear ? coverage : coverage * figure.color.alpha;
    const double kept = 1 - source;
    const double added = figure.effect == FigureEffect::clear ? 0.0 : source;
    red = red * kept + figure.color.red * added;
    green = green * kept + figure.color.green * added;
    blue = blue * kept + figure.color.blue * added;
    alpha = alpha * kept + added;
}

std::uint32_t BlendedColor::pixel() const {
    const auto byte = [](double component) {
        return static_cast<std::uint32_t>(std::lround(std::clamp(component, 0.0, 1.0) * 255));
    };
    return byte(alpha) << 24U | byte(red) << 16U | byte(green) << 8U | byte(blue);
}

AxisCuts::AxisCuts(Axis axis, std::int32_t start, std::int32_t end)
    : axis_(axis), positions_{start, std::max(start, end)} {}

void AxisCuts::add(const std::vector<Figure>& figures) {
    for (const Figure& figure : figures) {
        add(figure.outer);
        add(figure.inner);
    }
}

void AxisCuts::add(const RoundedBox& box) {
    if (box.isEmpty()) {
        return;
    }
    const Span span = spanOf(box, axis_);
    add(span.start);
    add(span.end);
    if (box.radius > 0) {
        add(span.start + box.radius);
        add(span.end - box.radius);
    }
}

void AxisCuts::add(double position) {
    for (const double whole : {std::floor(position), std::ceil(position)}) {
        if (whole > positions_[0] && whole < positions_[1]) {
            positions_.push_back(static_cast<std::int32_t>(whole));
        }
    }
}

void AxisCuts::finish() {
    std::sort(positions_.begin(), positions_.end());
    positions_.erase(std::unique(positions_.begin(), positions_.end()), positions_.end());
    if (positions_.size() == 1) {
        positions_.push_back(positions_[0]);
    }
}

FigureGrid::FigureGrid(const std::vector<Figure>& figures, const AxisCuts& columns,
                       const AxisCuts& rows)
    : figures_(figures) {
    columns_.reserve(figures.size());
    rows_.reserve(figures.size());
    for (const Figure& figure : figures) {
        columns_.push_back(covers(figure, columns));
        rows_.push_back(covers(figure, rows));
    }
}

std::vector<FigureGrid::BandCover> FigureGrid::covers(const Figure& figure, const AxisCuts& cuts) {
    const Span outer = spanOf(figure.outer, cuts.axis());
    const Span inner = spanOf(figure.inner, cuts.axis());
    std::vector<BandCover> covers(cuts.bandCount());
    for (std::size_t band = 0; band < covers.size(); ++band) {
        const std::int32_t position = cuts.start(band);
        covers[band].outer = spanCoverage(outer.start, outer.end, position);
        covers[band].inner =
            figure.inner.isEmpty() ? 0.0 : spanCoverage(inner.start, inner.end, position);
        covers[band].hasCorner = isInCorner(figure.outer, cuts.axis(), position) ||
                                 isInCorner(figure.inner, cuts.axis(), position);
    }
    return covers;
}

FigureGrid::Part FigureGrid::part(std::size_t figure, std::size_t column, std::size_t row,
                                  double& coverage) const {
    const BandCover& x = columns_[figure][column];
    const BandCover& y = rows_[figure][row];
    if (x.outer <= 0 || y.outer <= 0) {
        return Part::none;
    }
    if ((x.hasCorner && y.hasCorner) || figures_[figure].text) {
        return Part::detailed;
    }
    coverage = std::max(x.outer * y.outer - x.inner * y.inner, 0.0);
    return coverage > 0 ? Part::uniform : Part::none;
}

CellContent FigureGrid::content(std::size_t column, std::size_t row) const {
    CellContent content;
    BlendedColor blended;
    for (std::size_t i = 0; i < figures_.size(); ++i) {
        double coverage = 0;
        switch (part(i, column, row, coverage)) {
            case Part::none:
                break;
            case Part::uniform:
                blended.apply(figures_[i], coverage);
                break;
            case Part::detailed:
                content.kind = CellContent::Kind::detailed;
                return content;
        }
    }
    content.pixel = blended.pixel();
    return content;
}

void FigureGrid::collect(std::size_t column, std::size_t row,
                         std::vector<const Figure*>& figures) const {
    for (std::size_t i = 0; i < figures_.size(); ++i) {
        double coverage = 0;
        if (part(i, column, row, coverage) != Part::none) {
            figures.push_back(&figures_[i]);
        }
    }
}

}  // namespace platform::x11
