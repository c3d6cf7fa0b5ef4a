#include "platform/x11/selection_transfers.h"

#include <algorithm>
#include <optional>

namespace platform::x11 {

namespace {

constexpr std::uint32_t transferEvents =
    XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

/// What one request can carry beside its own header of 24 bytes, in whole words.
std::size_t largestProperty(Connection& connection) {
    constexpr std::size_t header = 32;
    return xcb_get_maximum_request_length(connection.get()) * std::size_t{4} - header;
}

/// What this connection has selected on a window; nothing when the window does not exist.
std::optional<std::uint32_t> eventMaskOf(Connection& connection, xcb_window_t window) {
    const Reply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
        connection.get(), xcb_get_window_attributes(connection.get(), window), nullptr));
    return reply ? std::optional(reply->your_event_mask) : std::nullopt;
}

void selectEvents(Connection& connection, xcb_window_t window, std::uint32_t mask) {
    xcb_change_window_attributes(connection.get(), window, XCB_CW_EVENT_MASK, &mask);
}

}  // namespace

SelectionTransfers::SelectionTransfers(Connection& connection, base::MainQueue& mainQueue,
                                       std::size_t pieceSize)
    : connection_(connection),
      mainQueue_(mainQueue),
      pieceSize_(std::min(pieceSize, largestProperty(connection)) & ~std::size_t{3}) {}

SelectionTransfers::Delivery SelectionTransfers::deliver(xcb_window_t requestor,
                                                         xcb_atom_t property,
                                                         const SelectionValue& value) {
    // The same property asked for once more replaces what was on its way there.
    if (const auto earlier = find(requestor, property); earlier != entries_.end()) {
        end(earlier, WindowState::exists);
    }
    if (value.bytes->size() > pieceSize_) {
        return start(requestor, property, value);
    }
    const std::size_t itemSize = value.format / 8U;
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property, value.type,
                        value.format, static_cast<std::uint32_t>(value.bytes->size() / itemSize),
                        value.bytes->data());
    return Delivery::accepted;
}

SelectionTransfers::Delivery SelectionTransfers::start(xcb_window_t requestor, xcb_atom_t property,
                                                       const SelectionValue& value) {
    if (entries_.size() == largestCount) {
        return Delivery::refused;
    }
    const auto sibling = findOn(requestor);
    const auto mask = eventMaskOf(connection_, requestor);
    if (!mask) {
        return Delivery::refused;
    }
    // Before the announcement, so that its deletion, which asks for the first piece, is seen.
    selectEvents(connection_, requestor, *mask | transferEvents);
    entries_.push_back({SelectionTransfer(requestor, property, value, pieceSize_),
                        sibling == entries_.end() ? *mask : sibling->previousEventMask});
    entries_.back().transfer.announce(connection_);
    lookLater();
    return Delivery::accepted;
}

void SelectionTransfers::handleEvent(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7F) {
        case XCB_PROPERTY_NOTIFY:
            handlePropertyNotify(reinterpret_cast<const xcb_property_notify_event_t&>(event));
            break;
        case XCB_DESTROY_NOTIFY:
            handleDestroyNotify(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
            break;
        default:
            break;
    }
}

void SelectionTransfers::handlePropertyNotify(const xcb_property_notify_event_t& event) {
    if (event.state != XCB_PROPERTY_DELETE) {
        return;
    }
    const auto entry = find(event.window, event.atom);
    if (entry == entries_.end()) {
        return;
    }
    switch (entry->transfer.sendNextPiece(connection_)) {
        case SelectionTransfer::Progress::going:
            break;
        case SelectionTransfer::Progress::complete:
            end(entry, WindowState::exists);
            break;
    }
}

void SelectionTransfers::handleDestroyNotify(xcb_window_t window) {
    for (auto entry = findOn(window); entry != entries_.end(); entry = findOn(window)) {
        end(entry, WindowState::destroyed);
    }
}

void SelectionTransfers::lookLater() {
    if (look_ == Look::none) {
        look_ = Look::due;
        mainQueue_.postAfter(lookInterval, alive_.guard([this] { lookAfterAll(); }));
    }
}

void SelectionTransfers::lookAfterAll() {
    look_ = Look::none;
    // The first of so many may follow the beginning at once.
    constexpr int mostQuietLooks = patience / lookInterval;
    for (auto entry = entries_.begin(); entry != entries_.end();) {
        const auto current = entry++;
        const std::uint64_t pieces = current->transfer.pieceCount();
        current->quietLooks = pieces == current->seenPieces ? current->quietLooks + 1 : 0;
        current->seenPieces = pieces;
        if (current->quietLooks > mostQuietLooks) {
            end(current, WindowState::exists);
        }
    }
    connection_.flush();
    if (!entries_.empty()) {
        lookLater();
    }
}

SelectionTransfers::Entries::iterator SelectionTransfers::find(xcb_window_t requestor,
                                                               xcb_atom_t property) {
    return std::ranges::find_if(entries_, [requestor, property](const Entry& entry) {
        return entry.transfer.requestor() == requestor && entry.transfer.property() == property;
    });
}

SelectionTransfers::Entries::iterator SelectionTransfers::findOn(xcb_window_t requestor) {
    return std::ranges::find(entries_, requestor,
                             [](const Entry& entry) { return entry.transfer.requestor(); });
}

void SelectionTransfers::end(Entries::iterator entry, WindowState windowState) {
    const xcb_window_t requestor = entry->transfer.requestor();
    const std::uint32_t previousEventMask = entry->previousEventMask;
    entries_.erase(entry);
    if (windowState == WindowState::exists && findOn(requestor) == entries_.end()) {
        selectEvents(connection_, requestor, previousEventMask);
    }
}

}  // namespace platform::x11
