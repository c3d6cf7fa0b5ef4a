#include "platform/tesseract/rules.h"

#include <algorithm>
#include <utility>

#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/thread_pair.h"

namespace platform::tesseract {

namespace {

/// In letter heights.
constexpr double shortestLying = 4.5;
/// In heights of capitals; a bar between words is 1.8 high.
constexpr double shortestUpright = 2.05;
constexpr double thickest = 0.22;
/// The share of a rule's length at which it is thin; elsewhere text touches it.
constexpr double thinShare = 0.6;
/// In letter heights: what remains of a corner or a grip.
constexpr double crumb = 0.5;
/// Rounded corners are larger, and thinner than any letter: so much of their box is ink.
constexpr double arc = 1.5;
constexpr double thinArc = 0.33;

int thicknessAt(const Mask& mask, int x, int y, int stepX, int stepY, int limit) {
    const auto reach = [&](int direction) {
        int count = 0;
        for (int distance = 1; distance <= limit; ++distance) {
            const int column = x + direction * distance * stepX;
            const int row = y + direction * distance * stepY;
            if (column < 0 || row < 0 || column >= mask.width() || row >= mask.height() ||
                mask.at(column, row) == 0) {
                break;
            }
            ++count;
        }
        return count;
    };
    return 1 + reach(-1) + reach(1);
}

bool isSet(const Mask& mask, int x, int y) {
    return x >= 0 && y >= 0 && x < mask.width() && y < mask.height() && mask.at(x, y) != 0;
}

}  // namespace

Rules::Rules(const Mask& mask, double letterHeight, double capitalHeight)
    : letterHeight_(letterHeight) {
    shareParts(2, [&](int part) {
        part == 0 ? findUpright(mask, letterHeight, capitalHeight) : findLying(mask, letterHeight);
    });
}

// A run of at least so many pixels has one of those that lie so far apart; it is found at the
// first.

void Rules::findLying(const Mask& mask, double letterHeight) {
    const int shortest = std::max(1, static_cast<int>(shortestLying * letterHeight));
    const int thick = std::max(2, static_cast<int>(thickest * letterHeight));
    for (int y = 0; y < mask.height(); ++y) {
        const std::uint8_t* row = mask.row(y);
        for (int x = shortest - 1; x < mask.width(); x += shortest) {
            if (row[x] == 0) {
                continue;
            }
            int left = x;
            while (left > std::max(0, x - shortest) && row[left - 1] != 0) {
                --left;
            }
            int right = x;
            while (right < mask.width() && row[right] != 0) {
                ++right;
            }
            if (right - left < shortest || left == x - shortest) {
                continue;
            }
            int thin = 0;
            for (int column = left; column < right; ++column) {
                thin += thicknessAt(mask, column, y, 0, 1, thick) <= thick ? 1 : 0;
            }
            if (thin >= thinShare * (right - left)) {
                lying_.push_back({left, y, right, y + 1});
            }
        }
    }
}

void Rules::findUpright(const Mask& mask, double letterHeight, double capitalHeight) {
    const int shortest = std::max(1, static_cast<int>(shortestUpright * capitalHeight));
    const int thick = std::max(2, static_cast<int>(thickest * letterHeight));
    for (int y = shortest - 1; y < mask.height(); y += shortest) {
        for (int x = 0; x < mask.width(); ++x) {
            if (mask.at(x, y) == 0) {
                continue;
            }
            int top = y;
            while (top > std::max(0, y - shortest) && mask.at(x, top - 1) != 0) {
                --top;
            }
            int bottom = y;
            while (bottom < mask.height() && mask.at(x, bottom) != 0) {
                ++bottom;
            }
            if (bottom - top < shortest || top == y - shortest) {
                continue;
            }
            int thin = 0;
            for (int row = top; row < bottom; ++row) {
                thin += thicknessAt(mask, x, row, 1, 0, thick) <= thick ? 1 : 0;
            }
            if (thin >= thinShare * (bottom - top)) {
                upright_.push_back({x, top, x + 1, bottom});
            }
        }
    }
    std::sort(upright_.begin(), upright_.end(), [](const Box& one, const Box& other) {
        return std::pair(one.left, one.top) < std::pair(other.left, other.top);
    });
}

void Rules::removeFrom(Mask& mask, InkPlane& ink) const {
    if (isEmpty()) {
        return;
    }
    Plane<Removal> removals = marked(mask.width(), mask.height());
    const Mask before = mask;
    // What becomes of a pixel goes by those of its column, from the top.
    shareBands(mask.width(), mask.height(), [&](int left, int right) {
        for (int y = 0; y < mask.height(); ++y) {
            for (int x = left; x < right; ++x) {
                Removal& removal = removals.at(x, y);
                if (removal == Removal::lying && isCrossed(before, removals, x, y)) {
                    removal = Removal::crossed;
                } else if (removal != Removal::none) {
                    mask.at(x, y) = 0;
                    ink.at(x, y) = 0;
                }
            }
        }
    });
    removeCrumbs(removals, mask, ink);
}

Plane<Rules::Removal> Rules::marked(int width, int height) const {
    Plane<Removal> removals(width, height);
    for (const Box& rule : lying_) {
        std::fill(removals.row(rule.top) + rule.left, removals.row(rule.top) + rule.right,
                  Removal::lying);
    }
    for (const Box& rule : upright_) {
        for (int y = rule.top; y < rule.bottom; ++y) {
            removals.at(rule.left, y) = Removal::upright;
        }
    }
    return removals;
}

bool Rules::isCrossed(const Mask& mask, const Plane<Removal>& removals, int x, int y) {
    int top = y;
    int bottom = y;
    while (top > 0 && removals.at(x, top) == Removal::lying) {
        --top;
    }
    while (bottom + 1 < mask.height() && removals.at(x, bottom) == Removal::lying) {
        ++bottom;
    }
    return isSet(mask, x, top) && removals.at(x, top) == Removal::none && isSet(mask, x, bottom) &&
           removals.at(x, bottom) == Removal::none;
}

void Rules::removeCrumbs(const Plane<Removal>& removals, Mask& mask, InkPlane& ink) const {
    const ConnectedComponents rest(mask);
    for (const Component& component : rest.all()) {
        const int longer = std::max(component.box.width(), component.box.height());
        const bool isThin = component.pixelCount < thinArc * component.box.area();
        if (longer > (isThin ? arc : crumb) * letterHeight_) {
            continue;
        }
        const Run* begin = rest.runsBegin(component);
        const Run* end = rest.runsEnd(component);
        if (std::any_of(begin, end, [&](const Run& run) { return hangsOn(removals, run); })) {
            for (const Run* run = begin; run != end; ++run) {
                std::fill(mask.row(run->y) + run->left, mask.row(run->y) + run->right,
                          std::uint8_t{0});
                std::fill(ink.row(run->y) + run->left, ink.row(run->y) + run->right,
                          std::uint8_t{0});
            }
        }
    }
}

bool Rules::hangsOn(const Plane<Removal>& removals, const Run& run) {
    const int left = std::max(0, run.left - 1);
    const int right = std::min(removals.width(), run.right + 1);
    for (int y = std::max(0, run.y - 1); y <= std::min(removals.height() - 1, run.y + 1); ++y) {
        const Removal* row = removals.row(y);
        if (std::any_of(row + left, row + right,
                        [](Removal removal) { return removal != Removal::none; })) {
            return true;
        }
    }
    return false;
}

}  // namespace platform::tesseract
