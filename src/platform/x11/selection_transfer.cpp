#include "platform/x11/selection_transfer.h"

#include <algorithm>

namespace platform::x11 {

SelectionTransfer::SelectionTransfer(xcb_window_t requestor, xcb_atom_t property,
                                     SelectionValue value, std::size_t pieceSize)
    : requestor_(requestor), property_(property), value_(std::move(value)), pieceSize_(pieceSize) {}

void SelectionTransfer::announce(Connection& connection) {
    const auto size =
        static_cast<std::uint32_t>(std::min<std::size_t>(value_.bytes->size(), 0x7FFFFFFF));
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, requestor_, property_,
                        connection.atom("INCR"), 32, 1, &size);
}

SelectionTransfer::Progress SelectionTransfer::sendNextPiece(Connection& connection) {
    const std::size_t size = std::min(pieceSize_, value_.bytes->size() - sentSize_);
    const std::size_t itemSize = value_.format / 8U;
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, requestor_, property_, value_.type,
                        value_.format, static_cast<std::uint32_t>(size / itemSize),
                        value_.bytes->data() + sentSize_);
    sentSize_ += size;
    ++pieceCount_;
    return size == 0 ? Progress::complete : Progress::going;
}

}  // namespace platform::x11
