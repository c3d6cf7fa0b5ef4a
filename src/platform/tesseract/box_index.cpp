#include "platform/tesseract/box_index.h"

namespace platform::tesseract {

BoxIndex::BoxIndex(const Box& bounds, int cellWidth, int cellHeight)
    : bounds_(bounds),
      cellWidth_(std::max(1, cellWidth)),
      cellHeight_(std::max(1, cellHeight)),
      cells_(std::max(0, bounds.width()) / cellWidth_ + 1,
             std::max(0, bounds.height()) / cellHeight_ + 1) {}

BoxIndex::Cells BoxIndex::cellsOf(const Box& box) const {
    const auto column = [this](int x) {
        return std::clamp((x - bounds_.left) / cellWidth_, 0, cells_.width() - 1);
    };
    const auto row = [this](int y) {
        return std::clamp((y - bounds_.top) / cellHeight_, 0, cells_.height() - 1);
    };
    return {column(box.left), row(box.top), column(box.right), row(box.bottom)};
}

void BoxIndex::put(std::size_t name, const Box& box) {
    constexpr Cells nowhere{0, 0, -1, -1};
    if (name >= places_.size()) {
        places_.resize(name + 1, nowhere);
    }
    const Cells before = places_[name];
    const Cells now = cellsOf(box);
    for (int row = now.top; row <= now.bottom; ++row) {
        for (int column = now.left; column <= now.right; ++column) {
            const bool isKnown = row >= before.top && row <= before.bottom &&
                                 column >= before.left && column <= before.right;
            if (!isKnown) {
                cells_.at(column, row).push_back(name);
            }
        }
    }
    places_[name] = now;
}

std::vector<std::size_t> BoxIndex::near(const Box& box) const {
    std::vector<std::size_t> found;
    const Cells cells = cellsOf(box);
    for (int row = cells.top; row <= cells.bottom; ++row) {
        for (int column = cells.left; column <= cells.right; ++column) {
            const auto& names = cells_.at(column, row);
            found.insert(found.end(), names.begin(), names.end());
        }
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

}  // namespace platform::tesseract
