#pragma once

#include <atomic>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace platform::tesseract {

/// A thread that stands by another one and takes a share of its work. It sleeps in between, and is
/// started by the first work that is shared.
///
/// Work comes in parts that may be done in any order and at the same time. Each of the two threads
/// takes the next part when it has ended its last, so that neither waits for one that the system
/// does not let run, but for the part that it has begun; and while it waits, it helps with what
/// that part itself shares. Where there is no thread to be had, all parts are done by the one that
/// asks.
class ThreadPair {
  public:
    ThreadPair() = default;
    ThreadPair(const ThreadPair&) = delete;
    ThreadPair& operator=(const ThreadPair&) = delete;
    ~ThreadPair();

    /// Calls `work` with each of 0 to `parts` - 1; all of them have ended when this returns. What
    /// one of them throws comes out here, and parts that were not begun stay undone. Only on the
    /// thread that owns the pair, and from within a part.
    void share(int parts, const std::function<void(int)>& work);

    /// Has what its thread shares by `shareParts` shared with `pair`, for as long as it lives; with
    /// nobody if that is null.
    class Use {
      public:
        explicit Use(ThreadPair* pair);
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;
        ~Use();

      private:
        ThreadPair* before_;
    };

  private:
    struct Job {
        const std::function<void(int)>& work;
        int parts;
        int next = 0;
        int running = 0;
        std::exception_ptr failure;
    };
    using Lock = std::unique_lock<std::mutex>;

    [[nodiscard]] bool isStarted();
    void standBy();
    void doParts(Job& job, Lock& lock);
    /// Of the jobs that are newer than `job`, the newest of which a part is to be done.
    Job* openAfter(const Job* job);
    void announce();
    void awaitChange(Lock& lock);

    std::mutex mutex_;
    std::condition_variable changed_;
    /// Grows with every job, every end of one, and the end of all.
    std::atomic<unsigned> changes_{0};
    std::vector<Job*> jobs_;
    bool isEnding_ = false;
    std::thread thread_;
};

/// With the pair that this thread uses or belongs to, and on this thread alone where there is none.
void shareParts(int parts, const std::function<void(int)>& work);

/// So many things in bands, such as the rows of a picture: `work` gets the first of each band and
/// the one behind its last. Each takes about as long as a look at so many pixels; all are one band
/// where that is so little that nothing would be won, and where there is no pair.
void shareBands(int count, int pixelsEach, const std::function<void(int, int)>& work);

/// Columns from `left` up to `right` of the rows from `top` up to `bottom`.
struct Patch {
    int left;
    int top;
    int right;
    int bottom;
};

/// A picture in patches, each after those to the left of it and above it: for steps in which a
/// pixel needs what has become of the one before it and of the one above. Whole where a share is
/// not worth it.
void shareSweep(int width, int height, const std::function<void(const Patch&)>& work);

}  // namespace platform::tesseract
