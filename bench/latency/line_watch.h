#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "latency/watch.h"

namespace latency {

/// Reads what a program prints into a file as soon as it is there.
class LineWatch final : public Watch {
  public:
    explicit LineWatch(const std::filesystem::path& file);
    ~LineWatch() override;
    LineWatch(const LineWatch&) = delete;
    LineWatch& operator=(const LineWatch&) = delete;

    [[nodiscard]] int descriptor() const override { return watch_; }
    void drain() override;

    /// Forgets the lines so far.
    void restart();
    /// When the first line that begins with `prefix` came.
    [[nodiscard]] std::optional<double> lineAt(const std::string& prefix) const;
    [[nodiscard]] std::size_t count() const { return lines_.size(); }

  private:
    struct Line {
        double at;
        std::string text;
    };
    int watch_;
    int file_;
    std::string rest_;
    std::vector<Line> lines_;
};

}  // namespace latency
