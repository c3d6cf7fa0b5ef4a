#include "platform/tesseract/connected_components.h"

#include <cstring>

namespace platform::tesseract {

namespace {

class DisjointSets {
  public:
    std::size_t add() {
        parents_.push_back(parents_.size());
        return parents_.size() - 1;
    }
    std::size_t find(std::size_t label) {
        while (parents_[label] != label) {
            parents_[label] = parents_[parents_[label]];
            label = parents_[label];
        }
        return label;
    }
    void join(std::size_t one, std::size_t other) {
        one = find(one);
        other = find(other);
        parents_[std::max(one, other)] = std::min(one, other);
    }
    [[nodiscard]] std::size_t size() const { return parents_.size(); }

  private:
    std::vector<std::size_t> parents_;
};

/// The first place from `x` on that is not 0, or `width`.
int nextMarked(const std::uint8_t* row, int x, int width) {
    // Most of a page is empty: eight pixels at a time.
    std::uint64_t eight = 0;
    while (x + 8 <= width) {
        std::memcpy(&eight, row + x, sizeof eight);
        if (eight != 0) {
            break;
        }
        x += 8;
    }
    while (x < width && row[x] == 0) {
        ++x;
    }
    return x;
}

/// The runs of a mask, row by row, each with a label; those of one label and of joined labels touch
/// each other, corner to corner too (Rosenfeld and Pfaltz 1966).
class LabelledRuns {
  public:
    explicit LabelledRuns(const Mask& mask) {
        for (int y = 0; y < mask.height(); ++y) {
            const std::size_t rowBegin = runs_.size();
            addRow(mask.row(y), mask.width(), y);
            aboveBegin_ = rowBegin;
            aboveEnd_ = runs_.size();
        }
    }

    [[nodiscard]] const std::vector<Run>& runs() const { return runs_; }
    [[nodiscard]] std::size_t labelOf(std::size_t run) { return sets_.find(labels_[run]); }
    [[nodiscard]] std::size_t labelCount() const { return sets_.size(); }

  private:
    void addRow(const std::uint8_t* row, int width, int y) {
        std::size_t above = aboveBegin_;
        for (int x = nextMarked(row, 0, width); x < width; x = nextMarked(row, x, width)) {
            const int left = x;
            while (x < width && row[x] != 0) {
                ++x;
            }
            while (above < aboveEnd_ && runs_[above].right < left) {
                ++above;
            }
            runs_.push_back({y, left, x});
            labels_.push_back(labelFrom(above, x));
        }
    }

    /// That of the runs above, from `above` on, that reach a run which ends at `right`.
    std::size_t labelFrom(std::size_t above, int right) {
        std::size_t label = sets_.size();
        for (; above < aboveEnd_ && runs_[above].left <= right; ++above) {
            if (label == sets_.size()) {
                label = labels_[above];
            } else {
                sets_.join(label, labels_[above]);
            }
        }
        return label == sets_.size() ? sets_.add() : label;
    }

    DisjointSets sets_;
    std::vector<Run> runs_;
    std::vector<std::size_t> labels_;
    /// The runs of the row above.
    std::size_t aboveBegin_ = 0;
    std::size_t aboveEnd_ = 0;
};

}  // namespace

ConnectedComponents::ConnectedComponents(const Mask& mask) {
    LabelledRuns labelled(mask);
    const std::vector<Run>& runs = labelled.runs();
    constexpr std::size_t unseen = static_cast<std::size_t>(-1);
    std::vector<std::size_t> places(labelled.labelCount(), unseen);
    for (std::size_t index = 0; index < runs.size(); ++index) {
        const Run& run = runs[index];
        const Box box{run.left, run.y, run.right, run.y + 1};
        std::size_t& place = places[labelled.labelOf(index)];
        if (place == unseen) {
            place = components_.size();
            components_.push_back({box, 0, 0, 0});
        }
        Component& component = components_[place];
        component.box = component.box.united(box);
        component.pixelCount += run.right - run.left;
        ++component.runCount;
    }
    std::size_t next = 0;
    for (Component& component : components_) {
        component.firstRun = next;
        next += component.runCount;
        component.runCount = 0;
    }
    runs_.resize(runs.size());
    for (std::size_t index = 0; index < runs.size(); ++index) {
        Component& component = components_[places[labelled.labelOf(index)]];
        runs_[component.firstRun + component.runCount++] = runs[index];
    }
}

}  // namespace platform::tesseract
