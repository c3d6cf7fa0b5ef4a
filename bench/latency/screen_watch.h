#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "desktop/x_client.h"
#include "latency/watch.h"

namespace latency {

/// Sees windows being mapped and the screen being painted. One row of pixels decides whether a
/// painting has changed anything; it is read through shared memory when the server reports damage,
/// so nothing is polled.
class ScreenWatch final : public Watch {
  public:
    explicit ScreenWatch(const std::string& displayName);
    ~ScreenWatch() override;
    ScreenWatch(const ScreenWatch&) = delete;
    ScreenWatch& operator=(const ScreenWatch&) = delete;

    [[nodiscard]] int descriptor() const override;
    void drain() override;

    /// Forgets what it has seen, and takes the row at `y` as it is now for unchanged.
    void restart(int y);
    /// When a window that covers most of the screen was mapped first.
    [[nodiscard]] std::optional<double> mappedAt() const { return mappedAt_; }
    /// Whether that window is still on the screen.
    [[nodiscard]] bool isMapped();
    /// When the row was first seen to be different.
    [[nodiscard]] std::optional<double> changedAt() const { return changedAt_; }
    /// Returns when nothing has been painted for a while, at the latest after `limit`.
    void waitUntilStill(std::chrono::milliseconds limit);
    [[nodiscard]] int width() const { return client_.screen().width_in_pixels; }
    [[nodiscard]] int height() const { return client_.screen().height_in_pixels; }

  private:
    [[nodiscard]] std::vector<std::uint32_t> readRow();
    void noteMapping(xcb_window_t window);

    desktop::XClient client_;
    std::uint8_t damageNotify_ = 0;
    std::uint32_t segment_ = 0;
    std::uint32_t* pixels_ = nullptr;
    int y_ = 0;
    std::vector<std::uint32_t> row_;
    std::optional<double> mappedAt_;
    xcb_window_t mappedWindow_ = XCB_WINDOW_NONE;
    std::optional<double> changedAt_;
    double paintedAt_ = 0;
};

}  // namespace latency
