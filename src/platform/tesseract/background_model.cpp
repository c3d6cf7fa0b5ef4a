#include "platform/tesseract/background_model.h"

#include <algorithm>
#include <atomic>
#include <cstring>

#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/thread_pair.h"

namespace platform::tesseract {

namespace {

constexpr int blockWidth = 8;
constexpr int blockHeight = 5;
/// Neighbours of one surface may differ this much in a channel: dithered and smooth gradients do.
constexpr int surfaceTolerance = 2;
/// Sum over the channels, for growing a surface pixel by pixel.
constexpr int growthTolerance = 1;
/// Sum over the channels: flat blocks that touch each other are one surface below this.
constexpr int differentSurfaces = 40;
/// A flat patch smaller than this that does not reach the edge is the inside of a letter or a knob.
constexpr int smallestSurface = 250;
constexpr std::uint16_t farAway = 60000;
/// Lines of text lie one above the other: what is beside a pixel says more than what is above it.
constexpr int sidewaysCost = 2;
constexpr int verticalCost = 3;

/// Of a pass over the rows and over each of them.
enum class Direction { forwards, backwards };

/// Pixels of a row in the order of a pass: from `first` on in steps of `step`, 1 or -1, up to
/// `end`.
struct Stretch {
    int first;
    int end;
    int step;
};

/// The next pixel from `x` on that does not lie on a surface, or the end. Most of a page does from
/// the start: eight pixels at a time.
int nextBesideSurfaces(const std::uint16_t* distances, int x, const Stretch& stretch) {
    constexpr int atOnce = 8;
    const auto areOnSurface = [&](int left) {
        std::uint64_t halves[2];
        std::memcpy(halves, distances + left, sizeof halves);
        return (halves[0] | halves[1]) == 0;
    };
    const int step = stretch.step;
    while ((stretch.end - x) * step >= atOnce && areOnSurface(step > 0 ? x : x + 1 - atOnce)) {
        x += step * atOnce;
    }
    while (x != stretch.end && distances[x] == 0) {
        x += step;
    }
    return x;
}

/// Calls `work` with each row of a page, the row before it in the direction of the pass, and the
/// pixels to look at, after what lies before them in both rows; the first row is before itself.
template <class Work>
void pass(int width, int height, Direction direction, const Work& work) {
    const bool isForwards = direction == Direction::forwards;
    shareSweep(width, height, [&](const Patch& patch) {
        const Stretch stretch = isForwards
                                    ? Stretch{patch.left, patch.right, 1}
                                    : Stretch{width - 1 - patch.left, width - 1 - patch.right, -1};
        for (int row = patch.top; row < patch.bottom; ++row) {
            const int before = std::max(0, row - 1);
            work(isForwards ? row : height - 1 - row, isForwards ? before : height - 1 - before,
                 stretch);
        }
    });
}

}  // namespace

BackgroundModel::BackgroundModel(const ColorPlane& page)
    : flat_(page.width(), page.height()),
      colors_(page.width(), page.height()),
      distances_(page.width(), page.height(), farAway) {
    markFlatBlocks(page);
    separateSurfaces(page);
    dropSmallSurfaces();
    takeSurfaces(page);
    if (hasSurfaces_) {
        grow(page);
        spread();
    } else {
        fillWithCommonestColor(page);
    }
}

void BackgroundModel::markFlatBlocks(const ColorPlane& page) {
    Mask corners(page.width(), page.height());
    shareBands(page.height(), page.width(),
               [&](int first, int end) { findCorners(page, first, end, corners); });
    shareBands(page.height(), page.width(),
               [&](int first, int end) { fillBlocks(corners, first, end); });
}

/// The lower right corner of each flat block, of the rows from `first` on.
void BackgroundModel::findCorners(const ColorPlane& page, int first, int end, Mask& corners) {
    const int width = page.width();
    const auto same = [](Color one, Color other) {
        return one == other || largestDifference(one, other) <= surfaceTolerance;
    };
    // How many rows a block has so far: whatever is above the height of one makes no difference.
    std::vector<int> rowsBelow(static_cast<std::size_t>(width), 0);
    for (int y = std::max(0, first - (blockHeight - 1)); y < end; ++y) {
        const Color* row = page.row(y);
        const Color* above = page.row(std::max(0, y - 1));
        std::uint8_t* isCorner = y >= first ? corners.row(y) : nullptr;
        int run = 0;
        for (int x = 0; x < width; ++x) {
            run = x > 0 && same(row[x], row[x - 1]) ? run + 1 : 1;
            int& rows = rowsBelow[static_cast<std::size_t>(x)];
            if (run < blockWidth) {
                rows = 0;
                continue;
            }
            rows = rows > 0 && same(row[x], above[x]) ? rows + 1 : 1;
            if (isCorner != nullptr) {
                isCorner[x] = rows >= blockHeight ? 1 : 0;
            }
        }
    }
}

/// All of the blocks with these corners that lies in the rows from `first` on.
void BackgroundModel::fillBlocks(const Mask& corners, int first, int end) {
    const int width = corners.width();
    std::vector<int> rowsLeft(static_cast<std::size_t>(width), 0);
    for (int y = std::min(corners.height(), end + blockHeight - 1) - 1; y >= first; --y) {
        const std::uint8_t* isCorner = corners.row(y);
        std::uint8_t* row = y < end ? flat_.row(y) : nullptr;
        int columnsLeft = 0;
        for (int x = width - 1; x >= 0; --x) {
            int& rows = rowsLeft[static_cast<std::size_t>(x)];
            if (isCorner[x] != 0) {
                rows = blockHeight;
            }
            if (rows > 0) {
                --rows;
                columnsLeft = blockWidth;
            }
            if (columnsLeft > 0) {
                --columnsLeft;
                if (row != nullptr) {
                    row[x] = 1;
                }
            }
        }
    }
}

void BackgroundModel::separateSurfaces(const ColorPlane& page) {
    const Mask together = flat_;
    const auto differs = [](Color one, Color other) {
        return one != other && distance(one, other) > differentSurfaces;
    };
    const int width = page.width();
    const auto separateRow = [&](int y) {
        const Color* colors = page.row(y);
        const std::uint8_t* isFlat = together.row(y);
        // Above the first row there is nothing to differ from.
        const Color* colorsAbove = page.row(std::max(0, y - 1));
        const std::uint8_t* isFlatAbove = together.row(std::max(0, y - 1));
        for (int x = 0; x < width; ++x) {
            if (isFlat[x] == 0) {
                continue;
            }
            const int left = std::max(0, x - 1);
            const int right = std::min(width - 1, x + 1);
            if ((isFlat[left] != 0 && differs(colors[x], colors[left])) ||
                (y > 0 && ((isFlatAbove[left] != 0 && differs(colors[x], colorsAbove[left])) ||
                           (isFlatAbove[x] != 0 && differs(colors[x], colorsAbove[x])) ||
                           (isFlatAbove[right] != 0 && differs(colors[x], colorsAbove[right]))))) {
                flat_.at(x, y) = 0;
            }
        }
    };
    shareBands(page.height(), width, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            separateRow(y);
        }
    });
}

void BackgroundModel::dropSmallSurfaces() {
    const ConnectedComponents surfaces(flat_);
    for (const Component& surface : surfaces.all()) {
        const Box& box = surface.box;
        const bool reachesEdge = box.left == 0 || box.top == 0 || box.right == flat_.width() ||
                                 box.bottom == flat_.height();
        if (surface.pixelCount >= smallestSurface || reachesEdge) {
            continue;
        }
        for (const Run* run = surfaces.runsBegin(surface); run != surfaces.runsEnd(surface);
             ++run) {
            std::fill(flat_.row(run->y) + run->left, flat_.row(run->y) + run->right,
                      std::uint8_t{0});
        }
    }
}

void BackgroundModel::takeSurfaces(const ColorPlane& page) {
    std::atomic<bool> areThere{false};
    shareBands(page.height(), page.width(), [&](int first, int end) {
        bool isThere = false;
        for (int y = first; y < end; ++y) {
            const std::uint8_t* isFlat = flat_.row(y);
            const Color* from = page.row(y);
            Color* colors = colors_.row(y);
            std::uint16_t* distances = distances_.row(y);
            for (int x = 0; x < page.width(); ++x) {
                if (isFlat[x] != 0) {
                    colors[x] = from[x];
                    distances[x] = 0;
                    isThere = true;
                }
            }
        }
        if (isThere) {
            areThere = true;
        }
    });
    hasSurfaces_ = areThere;
}

void BackgroundModel::grow(const ColorPlane& page) {
    const auto growRow = [&](int y, int before, const Stretch& stretch) {
        const Color* from = page.row(y);
        const Color* beside = page.row(before);
        const std::uint16_t* distancesBeside = distances_.row(before);
        Color* colors = colors_.row(y);
        std::uint16_t* distances = distances_.row(y);
        const int edge = stretch.step > 0 ? 0 : page.width() - 1;
        for (int x = nextBesideSurfaces(distances, stretch.first, stretch); x != stretch.end;
             x = nextBesideSurfaces(distances, x + stretch.step, stretch)) {
            const int last = x - stretch.step;
            const bool isSame =
                (x != edge && distances[last] == 0 &&
                 distance(from[x], from[last]) <= growthTolerance) ||
                (distancesBeside[x] == 0 && distance(from[x], beside[x]) <= growthTolerance);
            if (isSame) {
                colors[x] = from[x];
                distances[x] = 0;
            }
        }
    };
    pass(page.width(), page.height(), Direction::forwards, growRow);
    pass(page.width(), page.height(), Direction::backwards, growRow);
}

void BackgroundModel::spread() {
    const int width = colors_.width();
    const auto spreadRow = [&](int y, int before, const Stretch& stretch) {
        const Color* colorsBeside = colors_.row(before);
        const std::uint16_t* distancesBeside = distances_.row(before);
        Color* colors = colors_.row(y);
        std::uint16_t* distances = distances_.row(y);
        const int edge = stretch.step > 0 ? 0 : width - 1;
        for (int x = nextBesideSurfaces(distances, stretch.first, stretch); x != stretch.end;
             x = nextBesideSurfaces(distances, x + stretch.step, stretch)) {
            const int last = x - stretch.step;
            if (x != edge && distances[last] + sidewaysCost < distances[x]) {
                distances[x] = static_cast<std::uint16_t>(distances[last] + sidewaysCost);
                colors[x] = colors[last];
            }
            if (distancesBeside[x] + verticalCost < distances[x]) {
                distances[x] = static_cast<std::uint16_t>(distancesBeside[x] + verticalCost);
                colors[x] = colorsBeside[x];
            }
        }
    };
    pass(width, colors_.height(), Direction::forwards, spreadRow);
    pass(width, colors_.height(), Direction::backwards, spreadRow);
}

void BackgroundModel::fillWithCommonestColor(const ColorPlane& page) {
    // In two steps, by the upper and the lower bits: noise has as many colours as pixels, and what
    // counted them all would be larger than the page.
    constexpr unsigned lowBits = 3;
    constexpr std::size_t upperCount = std::size_t{1} << (3 * (8 - lowBits));
    constexpr std::size_t lowerCount = std::size_t{1} << (3 * lowBits);
    const auto join = [](unsigned red, unsigned green, unsigned blue, unsigned bits) {
        return std::size_t{(red << 2 * bits) | (green << bits) | blue};
    };
    const auto upperOf = [&](Color color) {
        return join(static_cast<unsigned>(color.red) >> lowBits,
                    static_cast<unsigned>(color.green) >> lowBits,
                    static_cast<unsigned>(color.blue) >> lowBits, 8 - lowBits);
    };
    const auto lowerOf = [&](Color color) {
        constexpr unsigned mask = (1U << lowBits) - 1;
        return join(color.red & mask, color.green & mask, color.blue & mask, lowBits);
    };
    std::vector<int> upperCounts(upperCount);
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            ++upperCounts[upperOf(page.at(x, y))];
        }
    }
    const auto most = static_cast<std::size_t>(
        std::max_element(upperCounts.begin(), upperCounts.end()) - upperCounts.begin());
    std::vector<int> lowerCounts(lowerCount);
    Color commonest;
    int highest = 0;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const Color color = page.at(x, y);
            if (upperOf(color) == most && ++lowerCounts[lowerOf(color)] > highest) {
                highest = lowerCounts[lowerOf(color)];
                commonest = color;
            }
        }
    }
    colors_ = ColorPlane(page.width(), page.height(), commonest);
}

}  // namespace platform::tesseract
