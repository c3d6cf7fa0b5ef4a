#pragma once

#include <xcb/shm.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "base/alive.h"
#include "base/main_queue.h"
#include "platform/x11/connection.h"

namespace platform::x11 {

/// The memory that the server writes pictures into. Main thread.
///
/// One segment, shared with the server, is kept and grown on demand, because the first write into
/// fresh memory costs ten times as much as the copy itself: while a selection grows the server
/// fills as much of it as the picture will take. Two seconds after its last use only its first
/// 3 MiB stay, with nothing in them; the rest goes back to the system. While a picture of it is
/// held, another capture gets a segment of its own, and the larger one is kept afterwards.
class PixelMemory {
  public:
    /// Memory for one picture; usable until the last copy of `owner` is gone, which may happen on
    /// any thread.
    struct Lease {
        std::uint8_t* bytes = nullptr;
        /// `XCB_NONE` when the server cannot write into it.
        xcb_shm_seg_t segment = XCB_NONE;
        std::shared_ptr<const void> owner;
    };

    /// The connection and the main queue outlive it; the leases may outlive all of them.
    PixelMemory(Connection& connection, base::MainQueue& mainQueue);
    ~PixelMemory();
    PixelMemory(const PixelMemory&) = delete;
    PixelMemory& operator=(const PixelMemory&) = delete;

    /// At least `size` bytes, with anything in them; none when there is not so much memory.
    std::optional<Lease> take(std::size_t size);
    /// Has the server write into the first `size` bytes, at most as many as its screen has, without
    /// waiting for it. What it has written into before costs nothing, and much comes in several
    /// calls.
    void prepare(std::size_t size);
    /// How many bytes are kept while no picture is held.
    [[nodiscard]] std::size_t idleSize() const;

  private:
    enum class Sharing { untried, possible, impossible };
    struct Segment;
    struct Returns;

    [[nodiscard]] bool canShare();
    [[nodiscard]] std::shared_ptr<Segment> makeSegment(std::size_t size);
    Lease lease(std::shared_ptr<Segment> segment);
    void takeBack(std::shared_ptr<Segment> segment);
    void detach(const Segment& segment);
    void shrink(std::uint64_t useNumber);
    void shrinkLater();
    [[nodiscard]] std::size_t screenSize() const;

    Connection& connection_;
    base::MainQueue& mainQueue_;
    Sharing sharing_ = Sharing::untried;
    std::shared_ptr<Segment> idle_;
    std::uint64_t useNumber_ = 0;
    /// Shared with the leases: the way back, closed when this ends.
    std::shared_ptr<Returns> returns_;
    base::Alive alive_;
};

}  // namespace platform::x11
