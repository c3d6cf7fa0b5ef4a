#include "platform/tesseract/rules.h"

#include "platform/tesseract/connected_components.h"

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
    findLying(mask, letterHeight);
    findUpright(mask, letterHeight, capitalHeight);
}

void Rules::findLying(const Mask& mask, double letterHeight) {
    const int shortest = static_cast<int>(shortestLying * letterHeight);
    const int thick = std::max(2, static_cast<int>(thickest * letterHeight));
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width();) {
            const int left = x;
            while (x < mask.width() && mask.at(x, y) != 0) {
                ++x;
            }
            if (x - left < shortest) {
                x = std::max(x, left + 1);
                continue;
            }
            int thin = 0;
            for (int column = left; column < x; ++column) {
                thin += thicknessAt(mask, column, y, 0, 1, thick) <= thick ? 1 : 0;
            }
            if (thin >= thinShare * (x - left)) {
                lying_.push_back({left, y, x, y + 1});
            }
        }
    }
}

void Rules::findUpright(const Mask& mask, double letterHeight, double capitalHeight) {
    const int shortest = static_cast<int>(shortestUpright * capitalHeight);
    const int thick = std::max(2, static_cast<int>(thickest * letterHeight));
    for (int x = 0; x < mask.width(); ++x) {
        for (int y = 0; y < mask.height();) {
            const int top = y;
            while (y < mask.height() && mask.at(x, y) != 0) {
                ++y;
            }
            if (y - top < shortest) {
                y = std::max(y, top + 1);
                continue;
            }
            int thin = 0;
            for (int row = top; row < y; ++row) {
                thin += thicknessAt(mask, x, row, 1, 0, thick) <= thick ? 1 : 0;
            }
            if (thin >= thinShare * (y - top)) {
                upright_.push_back({x, top, x + 1, y});
            }
        }
    }
}

void Rules::removeFrom(Mask& mask, InkPlane& ink) const {
    Mask removed(mask.width(), mask.height());
    const Mask before = mask;
    for (const Box& rule : lying_) {
        for (int x = rule.left; x < rule.right; ++x) {
            removed.at(x, rule.top) = 1;
        }
    }
    for (const Box& rule : upright_) {
        for (int y = rule.top; y < rule.bottom; ++y) {
            removed.at(rule.left, y) = 2;
        }
    }
    const auto erase = [&](int x, int y) {
        mask.at(x, y) = 0;
        ink.at(x, y) = 0;
    };
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width(); ++x) {
            if (removed.at(x, y) == 0) {
                continue;
            }
            if (removed.at(x, y) == 1) {
                int top = y;
                int bottom = y;
                while (top > 0 && removed.at(x, top) == 1) {
                    --top;
                }
                while (bottom + 1 < mask.height() && removed.at(x, bottom) == 1) {
                    ++bottom;
                }
                if (isSet(before, x, top) && removed.at(x, top) == 0 && isSet(before, x, bottom) &&
                    removed.at(x, bottom) == 0) {
                    removed.at(x, y) = 3;
                    continue;
                }
            }
            erase(x, y);
        }
    }
    const ConnectedComponents rest(mask);
    for (const Component& component : rest.all()) {
        const int longer = std::max(component.box.width(), component.box.height());
        const bool isThin = component.pixelCount < thinArc * component.box.area();
        if (longer > (isThin ? arc : crumb) * letterHeight_) {
            continue;
        }
        bool hung = false;
        for (const auto* run = rest.runsBegin(component); run != rest.runsEnd(component); ++run) {
            for (int y = std::max(0, run->y - 1); y <= std::min(mask.height() - 1, run->y + 1);
                 ++y) {
                for (int x = std::max(0, run->left - 1);
                     x <= std::min(mask.width() - 1, run->right); ++x) {
                    hung |= removed.at(x, y) != 0;
                }
            }
        }
        for (const auto* run = rest.runsBegin(component); hung && run != rest.runsEnd(component);
             ++run) {
            for (int x = run->left; x < run->right; ++x) {
                erase(x, run->y);
            }
        }
    }
}

}  // namespace platform::tesseract
