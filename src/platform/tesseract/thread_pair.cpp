#include "platform/tesseract/thread_pair.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <system_error>

namespace platform::tesseract {

namespace {

thread_local ThreadPair* current = nullptr;

using Clock = std::chrono::steady_clock;

/// To wake a sleeping thread takes 30 microseconds and more, a step of an analysis a few times as
/// long, and the next one follows closely: so long a thread looks out before it sleeps.
constexpr std::chrono::microseconds lookout{100};

void pauseShortly() {
    for (int pause = 0; pause < 16; ++pause) {
#if defined(__x86_64__)
        __builtin_ia32_pause();
#endif
    }
}

/// A step takes some nanoseconds for each pixel; less than this is done before the other thread has
/// come.
constexpr std::int64_t smallestBand = 12000;
/// More than two: whoever comes late, or is held up, leaves the rest to the other.
constexpr std::int64_t mostBands = 8;
/// As long as two threads take to meet, a few times over.
constexpr std::int64_t smallestPatch = 12000;

}  // namespace

ThreadPair::Use::Use(ThreadPair* pair) : before_(current) {
    current = pair;
}

ThreadPair::Use::~Use() {
    current = before_;
}

ThreadPair::~ThreadPair() {
    {
        const Lock lock(mutex_);
        isEnding_ = true;
        announce();
    }
    if (thread_.joinable()) {
        thread_.join();
    }
}

void ThreadPair::share(int parts, const std::function<void(int)>& work) {
    Lock lock(mutex_);
    Job job{work, parts, 0, 0, nullptr};
    if (parts > 1 && isStarted()) {
        jobs_.push_back(&job);
        announce();
    }
    doParts(job, lock);
    while (job.running > 0) {
        if (Job* newer = openAfter(&job)) {
            doParts(*newer, lock);
        } else {
            awaitChange(lock);
        }
    }
    std::erase(jobs_, &job);
    if (job.failure) {
        std::rethrow_exception(job.failure);
    }
}

bool ThreadPair::isStarted() {
    if (!thread_.joinable()) {
        try {
            thread_ = std::thread([this] { standBy(); });
        } catch (const std::system_error&) {
            return false;
        }
    }
    return true;
}

void ThreadPair::standBy() {
    const Use use(this);
    Lock lock(mutex_);
    while (!isEnding_) {
        if (Job* job = openAfter(nullptr)) {
            doParts(*job, lock);
        } else {
            awaitChange(lock);
        }
    }
}

void ThreadPair::doParts(Job& job, Lock& lock) {
    while (job.next < job.parts) {
        const int part = job.next++;
        ++job.running;
        lock.unlock();
        std::exception_ptr failure;
        try {
            job.work(part);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        --job.running;
        if (failure) {
            job.failure = failure;
            job.next = job.parts;
        }
    }
    if (job.running == 0) {
        announce();
    }
}

ThreadPair::Job* ThreadPair::openAfter(const Job* job) {
    const auto own = std::find(jobs_.begin(), jobs_.end(), job);
    const auto first = own == jobs_.end() ? jobs_.begin() : own + 1;
    const auto open =
        std::find_if(std::make_reverse_iterator(jobs_.end()), std::make_reverse_iterator(first),
                     [](const Job* other) { return other->next < other->parts; });
    return open == std::make_reverse_iterator(first) ? nullptr : *open;
}

void ThreadPair::announce() {
    changes_.fetch_add(1, std::memory_order_relaxed);
    changed_.notify_one();
}

void ThreadPair::awaitChange(Lock& lock) {
    const unsigned seen = changes_.load(std::memory_order_relaxed);
    lock.unlock();
    const auto end = Clock::now() + lookout;
    while (changes_.load(std::memory_order_relaxed) == seen && Clock::now() < end) {
        pauseShortly();
    }
    lock.lock();
    changed_.wait(lock, [&] { return changes_.load(std::memory_order_relaxed) != seen; });
}

void shareParts(int parts, const std::function<void(int)>& work) {
    if (current != nullptr && parts > 1) {
        current->share(parts, work);
        return;
    }
    for (int part = 0; part < parts; ++part) {
        work(part);
    }
}

void shareBands(int count, int pixelsEach, const std::function<void(int, int)>& work) {
    const std::int64_t things = count;
    const std::int64_t most = std::min(mostBands, things);
    const std::int64_t bands = std::min(things * pixelsEach / smallestBand, most);
    if (current == nullptr || bands < 2) {
        work(0, count);
        return;
    }
    shareParts(static_cast<int>(bands), [&](int band) {
        work(static_cast<int>(things * band / bands),
             static_cast<int>(things * (band + 1) / bands));
    });
}

void shareSweep(int width, int height, const std::function<void(const Patch&)>& work) {
    // Two columns of patches, the right one a row of patches behind the left one.
    constexpr int columns = 2;
    constexpr std::int64_t mostRows = 16;
    const std::int64_t pixels = std::int64_t{width} * height;
    const auto rows = static_cast<int>(
        std::min({pixels / (columns * smallestPatch), mostRows, std::int64_t{height}}));
    if (current == nullptr || rows < 2 || width < columns) {
        work({0, 0, width, height});
        return;
    }
    const auto part = [](int whole, int number, int parts) {
        return static_cast<int>(std::int64_t{whole} * number / parts);
    };
    for (int step = 0; step <= rows; ++step) {
        const int left = step < rows ? 0 : 1;
        const int right = step > 0 ? 1 : 0;
        shareParts(right - left + 1, [&](int number) {
            const int column = left + number;
            const int row = step - column;
            work({part(width, column, columns), part(height, row, rows),
                  part(width, column + 1, columns), part(height, row + 1, rows)});
        });
    }
}

}  // namespace platform::tesseract
