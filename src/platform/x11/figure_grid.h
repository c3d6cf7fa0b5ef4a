#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/x11/native_geometry.h"
#include "platform/x11/overlay_figure.h"

namespace platform::x11 {

/// A colour that is being laid together: components from 0 to 1, multiplied with the alpha.
struct BlendedColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;

    void apply(const Figure& figure, double coverage);
    /// Rounded to bytes: alpha, red, green, blue from the highest down.
    [[nodiscard]] std::uint32_t pixel() const;
};

/// The positions at which the edges of figures cut one axis: ascending, the first and the last are
/// the ends of the clip.
class AxisCuts {
  public:
    enum class Axis { x, y };
    AxisCuts(Axis axis, std::int32_t start, std::int32_t end);
    void add(const std::vector<Figure>& figures);
    /// Sorts them; nothing is added afterwards.
    void finish();

    [[nodiscard]] Axis axis() const { return axis_; }
    [[nodiscard]] std::size_t bandCount() const { return positions_.size() - 1; }
    [[nodiscard]] std::int32_t start(std::size_t band) const { return positions_[band]; }
    [[nodiscard]] std::int32_t end(std::size_t band) const { return positions_[band + 1]; }

  private:
    void add(const RoundedBox& box);
    void add(double position);

    Axis axis_;
    std::vector<std::int32_t> positions_;
};

/// What a cell of the grid shows.
struct CellContent {
    enum class Kind { uniform, detailed };
    Kind kind = Kind::uniform;
    /// Of a uniform cell.
    std::uint32_t pixel = 0;
};

/// One drawing seen through a grid: for each cell what it shows and which figures are in it.
class FigureGrid {
  public:
    /// All of them must outlive the grid.
    FigureGrid(const std::vector<Figure>& figures, const AxisCuts& columns, const AxisCuts& rows);

    [[nodiscard]] CellContent content(std::size_t column, std::size_t row) const;
    /// Appends the figures that have a part in the cell, in their order.
    void collect(std::size_t column, std::size_t row, std::vector<const Figure*>& figures) const;

  private:
    /// One figure in one band of one axis.
    struct BandCover {
        double outer = 0;
        double inner = 0;
        bool hasCorner = false;
    };
    enum class Part { none, uniform, detailed };

    [[nodiscard]] static std::vector<BandCover> covers(const Figure& figure, const AxisCuts& cuts);
    [[nodiscard]] Part part(std::size_t figure, std::size_t column, std::size_t row,
                            double& coverage) const;

    const std::vector<Figure>& figures_;
    std::vector<std::vector<BandCover>> columns_;
    std::vector<std::vector<BandCover>> rows_;
};

}  // namespace platform::x11
