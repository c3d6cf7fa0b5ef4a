#include "platform/tesseract/connected_components.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>

#include "platform/tesseract/thread_pair.h"

namespace platform::tesseract {

namespace {

using Labels = std::vector<std::size_t>;

/// Of the runs that are joined with this one, the first.
std::size_t firstOf(Labels& labels, std::size_t run) {
    while (labels[run] != run) {
        labels[run] = labels[labels[run]];
        run = labels[run];
    }
    return run;
}

void join(Labels& labels, std::size_t one, std::size_t other) {
    one = firstOf(labels, one);
    other = firstOf(labels, other);
    labels[std::max(one, other)] = std::min(one, other);
}

/// The first place from `x` on that is marked or not, or `width`.
int nextThat(bool isMarked, const std::uint8_t* row, int x, int width) {
    // Most of a page is one or the other: eight pixels at a time.
    constexpr std::uint64_t allMarked = 0x0101010101010101;
    const std::uint64_t toPass = isMarked ? 0 : allMarked;
    std::uint64_t eight = 0;
    while (x + 8 <= width) {
        std::memcpy(&eight, row + x, sizeof eight);
        if (eight != toPass) {
            break;
        }
        x += 8;
    }
    while (x < width && (row[x] != 0) != isMarked) {
        ++x;
    }
    return x;
}

/// The runs of a mask, row by row; those that touch each other, corner to corner too, are joined.
/// Bands of rows are looked at by themselves, and joined where they meet.
class JoinedRuns {
  public:
    explicit JoinedRuns(const Mask& mask) {
        std::mutex mutex;
        std::map<int, JoinedRuns> bands;
        shareBands(mask.height(), mask.width(), [&](int first, int end) {
            JoinedRuns band(mask, first, end);
            const std::scoped_lock lock(mutex);
            bands.emplace(first, std::move(band));
        });
        for (auto& [first, band] : bands) {
            append(std::move(band));
        }
    }

    [[nodiscard]] const std::vector<Run>& runs() const { return runs_; }
    /// Of the runs that are joined with this one, the first.
    [[nodiscard]] std::size_t labelOf(std::size_t run) { return firstOf(labels_, run); }

  private:
    JoinedRuns(const Mask& mask, int first, int end) {
        for (int y = first; y < end; ++y) {
            const std::size_t above = lastRow_;
            lastRow_ = runs_.size();
            addRow(mask.row(y), mask.width(), y);
            joinRows(above, lastRow_, runs_.size());
            if (y == first) {
                firstRowEnd_ = runs_.size();
            }
        }
    }

    void addRow(const std::uint8_t* row, int width, int y) {
        for (int left = nextThat(true, row, 0, width); left < width;) {
            const int right = nextThat(false, row, left, width);
            labels_.push_back(runs_.size());
            runs_.push_back({y, left, right});
            left = nextThat(true, row, right, width);
        }
    }

    /// The runs from `begin` up to `end` with those of the row above, from `above` up to `begin`.
    void joinRows(std::size_t above, std::size_t begin, std::size_t end) {
        for (std::size_t run = begin; run < end; ++run) {
            while (above < begin && runs_[above].right < runs_[run].left) {
                ++above;
            }
            for (std::size_t reached = above;
                 reached < begin && runs_[reached].left <= runs_[run].right; ++reached) {
                join(labels_, run, reached);
            }
        }
    }

    /// The rows below.
    void append(JoinedRuns&& band) {
        if (runs_.empty()) {
            *this = std::move(band);
            return;
        }
        const std::size_t begin = runs_.size();
        runs_.insert(runs_.end(), band.runs_.begin(), band.runs_.end());
        labels_.reserve(runs_.size());
        for (const std::size_t label : band.labels_) {
            labels_.push_back(begin + label);
        }
        joinRows(lastRow_, begin, begin + band.firstRowEnd_);
        lastRow_ = begin + band.lastRow_;
        band = JoinedRuns();
    }

    JoinedRuns() = default;

    std::vector<Run> runs_;
    Labels labels_;
    /// Where the runs of the first row end, and those of the last one begin.
    std::size_t firstRowEnd_ = 0;
    std::size_t lastRow_ = 0;
};

}  // namespace

ConnectedComponents::ConnectedComponents(const Mask& mask) {
    JoinedRuns joined(mask);
    const std::vector<Run>& runs = joined.runs();
    constexpr std::size_t unseen = static_cast<std::size_t>(-1);
    std::vector<std::size_t> places(runs.size(), unseen);
    for (std::size_t index = 0; index < runs.size(); ++index) {
        const Run& run = runs[index];
        const Box box{run.left, run.y, run.right, run.y + 1};
        std::size_t& place = places[joined.labelOf(index)];
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
        Component& component = components_[places[joined.labelOf(index)]];
        runs_[component.firstRun + component.runCount++] = runs[index];
    }
}

}  // namespace platform::tesseract
