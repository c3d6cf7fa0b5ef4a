#include "platform/tesseract/line_crew.h"

#include <algorithm>
#include <mutex>
#include <numeric>
#include <optional>
#include <thread>

namespace platform::tesseract {

namespace {

using Clock = std::chrono::steady_clock;

/// What is foreseen before this has gone is only a guess: other work may end. A fifth of the time,
/// or three seconds where that is more, as long as time is left.
std::chrono::milliseconds guessing(std::chrono::milliseconds limit) {
    constexpr std::chrono::milliseconds busyMachine{3000};
    return std::max(limit / 5, std::min(limit * 2 / 3, busyMachine));
}

/// The lines that are still to be read, the longest first, so that both threads end together.
class LineQueue {
  public:
    LineQueue(const std::vector<double>& lengths, std::chrono::milliseconds limit)
        : lengths_(lengths), order_(lengths.size()), limit_(limit) {
        std::iota(order_.begin(), order_.end(), std::size_t{0});
        std::stable_sort(order_.begin(), order_.end(), [&](std::size_t one, std::size_t other) {
            return lengths[one] > lengths[other];
        });
        whole_ = std::accumulate(lengths.begin(), lengths.end(), 0.0);
    }

    std::optional<std::size_t> take() {
        const std::scoped_lock lock(mutex_);
        isLate_ = isLate_ || foresees();
        if (isLate_ || next_ == order_.size()) {
            return std::nullopt;
        }
        begun_ += lengths_[order_[next_]];
        return order_[next_++];
    }
    [[nodiscard]] bool isEmpty() {
        const std::scoped_lock lock(mutex_);
        return next_ == order_.size();
    }
    [[nodiscard]] bool isLate() const { return isLate_; }

  private:
    /// Whether all of it will have taken longer than it may.
    [[nodiscard]] bool foresees() const {
        const auto elapsed = Clock::now() - start_;
        return elapsed > guessing(limit_) && next_ < order_.size() && begun_ > 0 &&
               std::chrono::duration<double>(elapsed).count() * whole_ / begun_ >
                   std::chrono::duration<double>(limit_).count();
    }

    const std::vector<double>& lengths_;
    std::vector<std::size_t> order_;
    std::chrono::milliseconds limit_;
    Clock::time_point start_ = Clock::now();
    std::mutex mutex_;
    std::size_t next_ = 0;
    double whole_ = 0;
    double begun_ = 0;
    bool isLate_ = false;
};

}  // namespace

LineCrew::LineCrew(std::unique_ptr<LineReader> first, CrewSize size)
    : first_(std::move(first)),
      threads_(size == CrewSize::two && std::thread::hardware_concurrency() >= 2
                   ? std::make_unique<ThreadPair>()
                   : nullptr) {}

base::Result<std::unique_ptr<LineCrew>> LineCrew::create(const std::vector<std::string>& languages,
                                                         CrewSize size) {
    auto first = LineReader::create(languages);
    if (!first) {
        return first.error();
    }
    return std::unique_ptr<LineCrew>(new LineCrew(std::move(first.value()), size));
}

bool LineCrew::wantsTwo(const std::vector<double>& lengths) const {
    const double whole = std::accumulate(lengths.begin(), lengths.end(), 0.0);
    return threads_ != nullptr && lengths.size() >= 2 &&
           (second_ != nullptr || whole >= worthSecondEngine);
}

void LineCrew::complete() {
    if (threads_ != nullptr && second_ == nullptr) {
        second_ = first_->another();
    }
}

base::Result<std::vector<LineReading>> LineCrew::readAll(const std::vector<double>& lengths,
                                                         const ReadLine& readLine,
                                                         std::chrono::milliseconds limit) {
    std::vector<LineReading> readings(lengths.size());
    LineQueue queue(lengths, limit);
    const auto work = [&](LineReader& reader) {
        while (const auto line = queue.take()) {
            readings[*line] = readLine(reader, *line);
        }
    };
    const ThreadPair::Use use(threads_.get());
    shareParts(wantsTwo(lengths) ? 2 : 1, [&](int part) {
        if (part == 0) {
            work(*first_);
            return;
        }
        if (!queue.isEmpty()) {
            complete();
        }
        if (second_ != nullptr) {
            work(*second_);
        }
    });
    if (queue.isLate()) {
        return base::Error{base::ErrorKind::failed,
                           "The picture holds more text than can be recognised in time; select a "
                           "smaller region."};
    }
    return readings;
}

}  // namespace platform::tesseract
