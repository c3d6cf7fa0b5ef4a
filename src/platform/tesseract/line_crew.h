#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/tesseract/line_reader.h"
#include "platform/tesseract/thread_pair.h"

namespace platform::tesseract {

/// How many threads may read.
enum class CrewSize { one, two };

/// Reads the lines of a page with one engine, or with two on two threads. The second engine is
/// loaded, on its own thread, by the first page that is long enough for it. What is read does not
/// depend on the number of threads. One thread at a time.
class LineCrew {
  public:
    static base::Result<std::unique_ptr<LineCrew>> create(const std::vector<std::string>& languages,
                                                          CrewSize size);

    /// Reads the line of that number with an engine; called on both threads.
    using ReadLine = std::function<LineReading(LineReader&, std::size_t)>;

    /// Reads all lines. `lengths` are the lines' lengths as multiples of their heights, which is
    /// what the time goes with. An error once a part of `limit` has gone and it is foreseen that
    /// all of them would take longer.
    base::Result<std::vector<LineReading>> readAll(const std::vector<double>& lengths,
                                                   const ReadLine& readLine,
                                                   std::chrono::milliseconds limit);

    /// Loads the second engine now, for pages that are worth it; not where one thread reads.
    void complete();
    /// Whether the second engine is loaded.
    [[nodiscard]] bool isComplete() const { return second_ != nullptr; }

    /// In line heights. Loading was measured to cost as much as reading 45 of them; from a hundred
    /// on, two threads end in three quarters of the time although one of them has to load its
    /// engine first, and with half of it afterwards.
    static constexpr double worthSecondEngine = 100;

    /// The thread of the second engine; null where one thread reads. This crew's own.
    [[nodiscard]] ThreadPair* threads() const { return threads_.get(); }

  private:
    LineCrew(std::unique_ptr<LineReader> first, CrewSize size);

    [[nodiscard]] bool wantsTwo(const std::vector<double>& lengths) const;

    std::unique_ptr<LineReader> first_;
    std::unique_ptr<LineReader> second_;
    std::unique_ptr<ThreadPair> threads_;
};

}  // namespace platform::tesseract
