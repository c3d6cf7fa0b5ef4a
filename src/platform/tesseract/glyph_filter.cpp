#include "platform/tesseract/glyph_filter.h"

#include "platform/tesseract/thread_pair.h"

namespace platform::tesseract {

namespace {

constexpr int smallestLetter = 5;
constexpr int largestLetter = 70;
constexpr int largestGlyph = 90;
constexpr double frameSideShare = 0.86;
constexpr int differentSurfaces = 18;
constexpr double secondSurfaceShare = 0.15;
/// How much of a letter's ink comes within two pixels of its edge, at least.
constexpr double sharpness = 0.42;
/// In letter heights; a dash's ends may be blended away, its long sides are not.
constexpr double markShare = 0.45;

/// About, of a letter; each is looked at several times.
constexpr int pixelsOfComponent = 200;

/// In pixels: a cell of the index of components holds a few letters.
constexpr int cellSize = 32;

/// How many of `count` pixels from (`x`, `y`) on are ink, themselves or one pixel further in.
struct Side {
    int x;
    int y;
    int stepX;
    int stepY;
    int count;
    int inwardX;
    int inwardY;

    [[nodiscard]] bool isDrawn(const Mask& mask) const {
        int drawn = 0;
        for (int index = 0; index < count; ++index) {
            const int column = x + stepX * index;
            const int row = y + stepY * index;
            if (mask.at(column, row) != 0 || mask.at(column + inwardX, row + inwardY) != 0) {
                ++drawn;
            }
        }
        return drawn >= frameSideShare * count;
    }
};

bool hasCorner(const Mask& mask, int x, int y, int inwardX, int inwardY) {
    return mask.at(x, y) != 0 || mask.at(x + inwardX, y) != 0 || mask.at(x, y + inwardY) != 0 ||
           mask.at(x + inwardX, y + inwardY) != 0;
}

std::vector<double> letterHeights(const ConnectedComponents& components) {
    std::vector<double> heights;
    for (const Component& component : components.all()) {
        const Box& box = component.box;
        if (box.height() >= smallestLetter && box.height() <= largestLetter &&
            box.width() <= 3 * box.height()) {
            heights.push_back(box.height());
        }
    }
    return heights;
}

}  // namespace

double commonLetterHeight(const ConnectedComponents& components) {
    return median(letterHeights(components));
}

double commonCapitalHeight(const ConnectedComponents& components) {
    std::vector<double> heights = letterHeights(components);
    const double common = median(heights);
    // Capitals are 1.3 to 1.5 times as high as small letters; taller are brackets and icons.
    std::erase_if(heights,
                  [common](double height) { return height < common || height > 1.6 * common; });
    return quantile(std::move(heights), 0.8);
}

GlyphFilter::GlyphFilter(const ColorPlane& page, const InkPlane& ink, const Mask& mask,
                         const ConnectedComponents& components, const BackgroundModel& background)
    : ink_(ink),
      mask_(mask),
      components_(components),
      background_(background),
      places_({0, 0, page.width(), page.height()}, cellSize, cellSize) {
    std::vector<double> heights = letterHeights(components);
    letterCount_ = static_cast<int>(heights.size());
    letterHeight_ = median(std::move(heights));
    for (std::size_t index = 0; index < components.all().size(); ++index) {
        places_.put(index, components.all()[index].box);
    }
}

std::vector<Glyph> GlyphFilter::glyphs() const {
    std::vector<Glyph> glyphs;
    if (letterCount_ == 0) {
        return glyphs;
    }
    const std::vector<Component>& all = components_.all();
    std::vector<std::uint8_t> areGlyphs(all.size());
    shareBands(static_cast<int>(all.size()), pixelsOfComponent, [&](int first, int end) {
        for (auto index = static_cast<std::size_t>(first); index < static_cast<std::size_t>(end);
             ++index) {
            areGlyphs[index] = isGlyph(all[index]) ? 1 : 0;
        }
    });
    for (std::size_t index = 0; index < all.size(); ++index) {
        if (areGlyphs[index] != 0) {
            glyphs.push_back({all[index].box, all[index].pixelCount, index});
        }
    }
    return glyphs;
}

bool GlyphFilter::isGlyph(const Component& component) const {
    return !isRule(component) && !isTooLarge(component) && !isBlob(component) &&
           !isFrame(component) && !isEdgeOfSurfaces(component) && !isBlurred(component) &&
           !holdsOthers(component);
}

bool GlyphFilter::isRule(const Component& component) const {
    const Box& box = component.box;
    const bool upright = box.width() <= 0.3 * letterHeight_ && box.height() > 2.3 * letterHeight_;
    const bool lying = box.width() > 4 * letterHeight_ && box.width() > 20 * box.height() &&
                       box.height() <= std::max(2.0, 0.25 * letterHeight_);
    return upright || lying;
}

bool GlyphFilter::isTooLarge(const Component& component) const {
    const Box& box = component.box;
    if (box.height() > largestGlyph || (letterCount_ < 2 && box.height() > 60) ||
        (box.width() > 12 * letterHeight_ && box.height() > 2.2 * letterHeight_)) {
        return true;
    }
    return box.height() > 2.8 * letterHeight_ && box.height() > 24 && !isInHeading(component);
}

bool GlyphFilter::isInHeading(const Component& component) const {
    const Box& box = component.box;
    if (box.width() > 2 * box.height() || component.pixelCount > 0.7 * box.area()) {
        return false;
    }
    const int reach = static_cast<int>(2.5 * box.height()) + 1;
    const auto nearby = places_.near({box.left - reach, box.top, box.right + reach, box.bottom});
    const auto alike = std::count_if(nearby.begin(), nearby.end(), [&](std::size_t index) {
        const Box& neighbor = components_.all()[index].box;
        return neighbor.height() >= 0.55 * box.height() &&
               neighbor.height() <= 1.6 * box.height() &&
               neighbor.sharedRows(box) >= 0.5 * box.height() &&
               -neighbor.sharedColumns(box) <= 2.5 * box.height();
    });
    // The component itself is one of them.
    return alike >= 4;
}

bool GlyphFilter::isBlob(const Component& component) const {
    const Box& box = component.box;
    return box.width() >= 1.4 * letterHeight_ && box.height() >= 1.4 * letterHeight_ &&
           component.pixelCount > 0.82 * box.area();
}

bool GlyphFilter::isFrame(const Component& component) const {
    const Box& box = component.box;
    if (box.width() < 7 || box.height() <= std::max(6.0, 1.25 * letterHeight_) ||
        box.width() < 0.85 * box.height() || component.pixelCount > 0.62 * box.area()) {
        return false;
    }
    const int right = box.right - 1;
    const int bottom = box.bottom - 1;
    const Side sides[] = {{box.left, box.top, 1, 0, box.width(), 0, 1},
                          {box.left, bottom, 1, 0, box.width(), 0, -1},
                          {box.left, box.top, 0, 1, box.height(), 1, 0},
                          {right, box.top, 0, 1, box.height(), -1, 0}};
    for (const Side& side : sides) {
        if (!side.isDrawn(mask_)) {
            return false;
        }
    }
    if (!hasCorner(mask_, box.left, box.top, 1, 1) || !hasCorner(mask_, right, box.top, -1, 1) ||
        !hasCorner(mask_, box.left, bottom, 1, -1) || !hasCorner(mask_, right, bottom, -1, -1)) {
        return false;
    }
    int inside = 0;
    for (int y = box.top + 3; y < box.bottom - 3; ++y) {
        for (int x = box.left + 3; x < box.right - 3; ++x) {
            inside += mask_.at(x, y);
        }
    }
    return inside < 0.05 * std::max(1, (box.width() - 6) * (box.height() - 6));
}

bool GlyphFilter::isBlurred(const Component& component) const {
    const auto at = [this](int x, int y) {
        const bool isInside = x >= 0 && y >= 0 && x < ink_.width() && y < ink_.height();
        return isInside ? static_cast<int>(ink_.at(x, y)) : 0;
    };
    int strongest = 0;
    long sideJumps = 0;
    long topJumps = 0;
    for (const auto* run = components_.runsBegin(component); run != components_.runsEnd(component);
         ++run) {
        const int y = run->y;
        const int last = run->right - 1;
        for (int x = run->left; x < run->right; ++x) {
            strongest = std::max(strongest, at(x, y));
            // The stronger of the two neighbours above and below: strokes have an edge on one side.
            topJumps +=
                at(x, y) - std::min({at(x, y - 1), at(x, y - 2), at(x, y + 1), at(x, y + 2)});
        }
        sideJumps += std::max(at(run->left, y), at(std::min(run->left + 1, last), y)) -
                     std::min(at(run->left - 1, y), at(run->left - 2, y));
        sideJumps += std::max(at(last, y), at(std::max(last - 1, run->left), y)) -
                     std::min(at(run->right, y), at(run->right + 1, y));
    }
    const double least = sharpness * strongest;
    const bool isFlat = component.box.height() < markShare * letterHeight_;
    return static_cast<double>(sideJumps) < least * 2 * static_cast<double>(component.runCount) &&
           (!isFlat || static_cast<double>(topJumps) < least * component.pixelCount);
}

bool GlyphFilter::holdsOthers(const Component& component) const {
    const Box& box = component.box;
    if (box.height() < 1.5 * letterHeight_ || box.width() < 1.5 * letterHeight_ ||
        component.pixelCount > 0.3 * box.area()) {
        return false;
    }
    const auto inside = places_.near(box);
    return std::any_of(inside.begin(), inside.end(), [&](std::size_t index) {
        const Box& inner = components_.all()[index].box;
        return inner.height() >= 0.5 * letterHeight_ && inner.left > box.left &&
               inner.right < box.right && inner.top > box.top && inner.bottom < box.bottom;
    });
}

bool GlyphFilter::isEdgeOfSurfaces(const Component& component) const {
    const ColorPlane& colors = background_.colors();
    const Run* first = components_.runsBegin(component);
    const Color one = colors.at(first->left, first->y);
    int onOther = 0;
    for (const Run* run = first; run != components_.runsEnd(component); ++run) {
        for (int x = run->left; x < run->right; ++x) {
            if (distance(colors.at(x, run->y), one) > differentSurfaces) {
                ++onOther;
            }
        }
    }
    if (std::min(onOther, component.pixelCount - onOther) <
        secondSurfaceShare * component.pixelCount) {
        return false;
    }
    // Letters may well stand on two surfaces.
    return component.box.height() >= 2.2 * letterHeight_ ||
           component.box.width() >= 2.2 * letterHeight_;
}

}  // namespace platform::tesseract
