#include "platform/tesseract/connected_components.h"

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

std::vector<Run> runsOf(const std::uint8_t* row, int width, int y) {
    std::vector<Run> runs;
    for (int x = 0; x < width;) {
        if (row[x] == 0) {
            ++x;
            continue;
        }
        const int left = x;
        while (x < width && row[x] != 0) {
            ++x;
        }
        runs.push_back({y, left, x});
    }
    return runs;
}

}  // namespace

ConnectedComponents::ConnectedComponents(const Mask& mask) {
    DisjointSets sets;
    std::vector<Run> runs;
    std::vector<std::size_t> labels;
    std::size_t aboveBegin = 0;
    std::size_t aboveEnd = 0;
    for (int y = 0; y < mask.height(); ++y) {
        const std::size_t rowBegin = runs.size();
        std::size_t above = aboveBegin;
        for (const Run& run : runsOf(mask.row(y), mask.width(), y)) {
            while (above < aboveEnd && runs[above].right < run.left) {
                ++above;
            }
            std::size_t label = sets.size();
            for (std::size_t index = above; index < aboveEnd && runs[index].left <= run.right;
                 ++index) {
                if (label == sets.size()) {
                    label = labels[index];
                } else {
                    sets.join(label, labels[index]);
                }
            }
            if (label == sets.size()) {
                label = sets.add();
            }
            runs.push_back(run);
            labels.push_back(label);
        }
        aboveBegin = rowBegin;
        aboveEnd = runs.size();
    }

    constexpr std::size_t unseen = static_cast<std::size_t>(-1);
    std::vector<std::size_t> places(sets.size(), unseen);
    for (std::size_t index = 0; index < runs.size(); ++index) {
        const Run& run = runs[index];
        const Box box{run.left, run.y, run.right, run.y + 1};
        std::size_t& place = places[sets.find(labels[index])];
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
        Component& component = components_[places[sets.find(labels[index])]];
        runs_[component.firstRun + component.runCount++] = runs[index];
    }
}

}  // namespace platform::tesseract
