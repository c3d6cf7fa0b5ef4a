#include "platform/tesseract/cell_marks.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

namespace {

/// In letter heights, but at least so many pixels: what is drawn as one row or as a dot.
constexpr double flatShare = 0.2;
constexpr int flatPixels = 2;
constexpr double dotShare = 0.42;
constexpr int dotPixels = 3;
/// In pitches.
constexpr double lowLineShare = 0.7;
constexpr double dashShare = 0.4;
constexpr double tildeShare = 0.55;
/// In letter heights above the baseline.
constexpr double lowestDash = 0.2;
constexpr double highestDash = 0.9;
constexpr double lowestQuote = 0.45;
constexpr double tallestQuote = 0.75;
constexpr double tallestTilde = 0.6;
constexpr double lowestCaret = 0.35;
constexpr double topOfCaret = 0.95;

/// A shape as a mask, its rows counted from its top.
class Marked {
  public:
    Marked(const GlyphShape& shape, double letterHeight, double pitch)
        : shape_(shape),
          letterHeight_(letterHeight),
          pitch_(pitch),
          height_(static_cast<int>(shape.pixels.size()) / shape.width) {}

    [[nodiscard]] std::string name() const {
        const std::vector<Box> rows = parts(Direction::down);
        if (rows.size() == 2) {
            return nameOfTwo(rows[0], rows[1]);
        }
        if (rows.size() != 1) {
            return {};
        }
        const std::vector<Box> columns = parts(Direction::across);
        if (columns.size() == 2 && isQuote(columns[0]) && isQuote(columns[1])) {
            return "\"";
        }
        return columns.size() == 1 ? nameOfOne(columns[0]) : "";
    }

  private:
    enum class Direction : std::uint8_t { down, across };

    [[nodiscard]] bool isSet(int x, int y) const {
        const auto width = static_cast<std::size_t>(shape_.width);
        return shape_.pixels[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)] !=
               0;
    }
    /// In letter heights, of the upper edge of row `y`.
    [[nodiscard]] double above(int y) const { return (shape_.rise - y) / letterHeight_; }
    [[nodiscard]] double pixel() const { return 1 / letterHeight_; }

    /// What empty rows or columns separate.
    [[nodiscard]] std::vector<Box> parts(Direction direction) const {
        const bool isDown = direction == Direction::down;
        const int count = isDown ? height_ : shape_.width;
        const int length = isDown ? shape_.width : height_;
        std::vector<Box> found;
        bool isOpen = false;
        for (int index = 0; index < count; ++index) {
            bool isEmpty = true;
            for (int place = 0; place < length; ++place) {
                const int x = isDown ? place : index;
                const int y = isDown ? index : place;
                if (!isSet(x, y)) {
                    continue;
                }
                const Box pixel{x, y, x + 1, y + 1};
                if (isEmpty && !isOpen) {
                    found.push_back(pixel);
                }
                found.back() = found.back().united(pixel);
                isEmpty = false;
                isOpen = true;
            }
            isOpen = !isEmpty;
        }
        return found;
    }

    [[nodiscard]] bool isFlat(const Box& box) const {
        return box.height() <= std::max<double>(flatPixels, flatShare * letterHeight_);
    }
    [[nodiscard]] bool isDot(const Box& box) const {
        const double most = std::max<double>(dotPixels, dotShare * letterHeight_);
        return box.height() <= most && box.width() <= most;
    }
    [[nodiscard]] bool isQuote(const Box& box) const {
        return box.height() >= box.width() && box.height() <= tallestQuote * letterHeight_ &&
               above(box.bottom) >= lowestQuote &&
               box.width() <= std::max(2.0, 0.4 * letterHeight_);
    }

    [[nodiscard]] std::string nameOfTwo(const Box& upper, const Box& lower) const {
        if (isFlat(upper) && isFlat(lower) && upper.width() >= dashShare * pitch_ &&
            std::abs(upper.width() - lower.width()) <= 1) {
            return "=";
        }
        if (!isDot(upper) || std::abs(upper.centerX() - lower.centerX()) > 1 ||
            above(upper.top) > 1 + 1.5 * pixel()) {
            return {};
        }
        const bool isAlike = std::abs(upper.height() - lower.height()) <= 0 &&
                             std::abs(upper.width() - lower.width()) <= 0;
        if (isAlike && std::abs(above(lower.bottom)) <= 1.5 * pixel()) {
            return ":";
        }
        const bool isTail = lower.height() > upper.height() && above(lower.bottom) < -pixel() &&
                            lower.width() <= upper.width() + 1 &&
                            lower.height() <= 0.8 * letterHeight_;
        return isTail ? ";" : "";
    }

    [[nodiscard]] std::string nameOfOne(const Box& box) const {
        const double middle = (above(box.top) + above(box.bottom)) / 2;
        if (isFlat(box)) {
            // Nothing else lies flat below the baseline.
            if (shape_.rise <= 1 && box.width() >= lowLineShare * pitch_) {
                return "_";
            }
            if (isFull() && box.width() >= dashShare * pitch_ && box.width() > 1.8 * box.height() &&
                middle > lowestDash && middle < highestDash) {
                return "-";
            }
        }
        if (isDot(box) && box.width() == box.height() && isMirrored() &&
            std::abs(above(box.bottom)) <= 1.5 * pixel() && middle < 0.4) {
            return ".";
        }
        if (isTilde(box, middle)) {
            return "~";
        }
        if (isCaret(box)) {
            return "^";
        }
        return isQuote(box) && box.height() > box.width() && isFull() ? "'" : "";
    }

    [[nodiscard]] bool isTilde(const Box& box, double middle) const {
        return box.width() >= tildeShare * pitch_ && box.height() <= tallestTilde * letterHeight_ &&
               box.width() > 1.3 * box.height() && box.height() >= 2 && middle > lowestDash &&
               middle < highestDash && meanRow(Half::left) + 0.2 < meanRow(Half::right) &&
               endsInTheMiddle();
    }

    /// A wave begins low and ends high, a slope does not.
    [[nodiscard]] bool endsInTheMiddle() const {
        int first = 0;
        int last = 0;
        for (int y = 0; y < height_; ++y) {
            first = isSet(0, y) ? y : first;
        }
        for (int y = height_; y-- > 0;) {
            last = isSet(shape_.width - 1, y) ? y : last;
        }
        return first > 0 && last < height_ - 1;
    }

    [[nodiscard]] bool isCaret(const Box& box) const {
        if (above(box.bottom) < lowestCaret || above(box.top) < topOfCaret ||
            box.width() < dashShare * pitch_ || box.height() < 3) {
            return false;
        }
        // Two legs that meet at the top; an asterisk is widest in its middle.
        const int middle = shape_.width / 2;
        int left = shape_.width;
        int right = -1;
        for (int y = 0; y < height_; ++y) {
            const Edges edges = edgesOf(y);
            if (edges.left > left || edges.right < right ||
                (y * 2 >= height_ && isSet(middle, y))) {
                return false;
            }
            left = edges.left;
            right = edges.right;
        }
        const Edges top = edgesOf(0);
        return left == 0 && right == shape_.width - 1 && top.left > 0 &&
               top.right < shape_.width - 1 && top.right - top.left <= 2;
    }

    struct Edges {
        int left;
        int right;
    };

    [[nodiscard]] Edges edgesOf(int y) const {
        Edges edges{shape_.width, -1};
        for (int x = 0; x < shape_.width; ++x) {
            if (isSet(x, y)) {
                edges = {std::min(edges.left, x), x};
            }
        }
        return edges;
    }

    enum class Half : std::uint8_t { left, right };

    [[nodiscard]] double meanRow(Half half) const {
        double sum = 0;
        int count = 0;
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < shape_.width; ++x) {
                if (isSet(x, y) && (2 * x + 1 < shape_.width) == (half == Half::left)) {
                    sum += y;
                    ++count;
                }
            }
        }
        return count == 0 ? 0 : sum / count;
    }

    [[nodiscard]] bool isFull() const {
        const auto set = std::count(shape_.pixels.begin(), shape_.pixels.end(), 1);
        return static_cast<double>(set) >= 0.85 * static_cast<double>(shape_.pixels.size());
    }
    [[nodiscard]] bool isMirrored() const {
        return std::equal(shape_.pixels.begin(), shape_.pixels.end(), shape_.pixels.rbegin());
    }

    const GlyphShape& shape_;
    double letterHeight_;
    double pitch_;
    int height_;
};

}  // namespace

std::string markOf(const GlyphShape& shape, double letterHeight, double pitch) {
    return shape.isEmpty() ? "" : Marked(shape, letterHeight, pitch).name();
}

}  // namespace platform::tesseract
