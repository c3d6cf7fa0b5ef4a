#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <list>

#include "base/alive.h"
#include "base/main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/selection_transfer.h"

namespace platform::x11 {

/// Brings values to the windows that asked for them: small ones at once, large ones in pieces, any
/// number at a time up to a limit. A requestor that goes away or stops taking pieces ends its
/// transfer. No timer runs while nothing is under way. Main thread.
class SelectionTransfers {
  public:
    enum class Delivery { accepted, refused };

    /// A transfer whose requestor takes nothing for this long is given up, two looks later at most.
    static constexpr std::chrono::milliseconds patience{10000};
    /// How often is looked after all of them together, with one timer: it runs on for this long
    /// after the last one, not for the patience of each.
    static constexpr std::chrono::milliseconds lookInterval{2500};
    /// More requestors at once are not served: each of them holds a picture in memory.
    static constexpr std::size_t largestCount = 32;
    /// What is larger goes in pieces of this size: the server stores a property of one mebibyte
    /// within a millisecond, and nobody else waits noticeably for it.
    static constexpr std::size_t defaultPieceSize = std::size_t{1024} * 1024;

    /// `pieceSize` is in bytes; what the server accepts in one request limits it further.
    SelectionTransfers(Connection& connection, base::MainQueue& mainQueue, std::size_t pieceSize);

    /// Writes `value` into the property, or announces that it comes in pieces.
    Delivery deliver(xcb_window_t requestor, xcb_atom_t property, const SelectionValue& value);
    void handleEvent(const xcb_generic_event_t& event);
    /// How many values are on their way.
    [[nodiscard]] std::size_t count() const { return entries_.size(); }

  private:
    struct Entry {
        SelectionTransfer transfer;
        /// What this connection had selected on the requestor's window before.
        std::uint32_t previousEventMask;
        /// What had been sent at the last look, and at how many looks nothing more.
        std::uint64_t seenPieces = 0;
        int quietLooks = 0;
    };
    using Entries = std::list<Entry>;
    enum class WindowState { exists, destroyed };

    Delivery start(xcb_window_t requestor, xcb_atom_t property, const SelectionValue& value);
    void handlePropertyNotify(const xcb_property_notify_event_t& event);
    void handleDestroyNotify(xcb_window_t window);
    void lookLater();
    void lookAfterAll();
    Entries::iterator find(xcb_window_t requestor, xcb_atom_t property);
    Entries::iterator findOn(xcb_window_t requestor);
    void end(Entries::iterator entry, WindowState windowState);

    Connection& connection_;
    base::MainQueue& mainQueue_;
    std::size_t pieceSize_;
    Entries entries_;
    enum class Look { none, due };
    Look look_ = Look::none;
    base::Alive alive_;
};

}  // namespace platform::x11
