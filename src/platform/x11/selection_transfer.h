#pragma once

#include <xcb/xcb.h>

#include <cstddef>
#include <cstdint>

#include "platform/x11/selection_contents.h"

namespace platform::x11 {

/// One value on its way to another program in pieces (INCR): each piece is written into a property
/// of the requestor's window once the requestor has taken, and thereby deleted, the one before.
/// Main thread.
class SelectionTransfer {
  public:
    enum class Progress { going, complete };

    /// `pieceSize` is in bytes, a multiple of 4.
    SelectionTransfer(xcb_window_t requestor, xcb_atom_t property, SelectionValue value,
                      std::size_t pieceSize);

    [[nodiscard]] xcb_window_t requestor() const { return requestor_; }
    [[nodiscard]] xcb_atom_t property() const { return property_; }
    /// Grows with each piece.
    [[nodiscard]] std::uint64_t pieceCount() const { return pieceCount_; }

    /// Says that pieces will come, and how many bytes they hold at least.
    void announce(Connection& connection);
    /// Writes the next piece; the last one is empty.
    Progress sendNextPiece(Connection& connection);

  private:
    xcb_window_t requestor_;
    xcb_atom_t property_;
    SelectionValue value_;
    std::size_t pieceSize_;
    std::size_t sentSize_ = 0;
    std::uint64_t pieceCount_ = 0;
};

}  // namespace platform::x11
