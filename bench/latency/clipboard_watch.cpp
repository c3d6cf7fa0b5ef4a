#include "latency/clipboard_watch.h"

#include <xcb/xfixes.h>

#include "latency/monotonic.h"

namespace latency {

using desktop::Reply;

ClipboardWatch::ClipboardWatch(const std::string& displayName)
    : client_(displayName),
      window_(xcb_generate_id(client_.get())),
      clipboard_(client_.atom("CLIPBOARD")),
      png_(client_.atom("image/png")),
      incremental_(client_.atom("INCR")),
      property_(client_.atom("LUMAFRAME_BENCH_PASTE")) {
    xcb_connection_t* connection = client_.get();
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window_, client_.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    selectionNotify_ =
        static_cast<std::uint8_t>(xcb_get_extension_data(connection, &xcb_xfixes_id)->first_event +
                                  XCB_XFIXES_SELECTION_NOTIFY);
    xcb_discard_reply(connection, xcb_xfixes_query_version(connection, 5, 0).sequence);
    xcb_xfixes_select_selection_input(connection, window_, clipboard_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    client_.synchronize();
}

int ClipboardWatch::descriptor() const {
    return xcb_get_file_descriptor(client_.get());
}

void ClipboardWatch::drain() {
    while (const auto event = client_.pollEvent()) {
        const auto type = static_cast<std::uint8_t>(event->response_type & 0x7FU);
        if (type == selectionNotify_) {
            handleOwner(reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(*event).owner);
        } else if (type == XCB_SELECTION_NOTIFY) {
            const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(*event);
            if (answer.property != XCB_ATOM_NONE) {
                handleAnswer();
            }
        } else if (type == XCB_PROPERTY_NOTIFY) {
            const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
            if (change.state == XCB_PROPERTY_NEW_VALUE && transfer_ == Transfer::inPieces) {
                handlePiece();
            }
        }
    }
}

void ClipboardWatch::handleOwner(xcb_window_t owner) {
    if (owner == XCB_WINDOW_NONE) {
        return;
    }
    if (!ownedAt_) {
        ownedAt_ = now();
    }
    // Asked again of each new owner: a program may first empty the clipboard.
    transfer_ = Transfer::asked;
    receivedBytes_ = 0;
    xcb_convert_selection(client_.get(), window_, clipboard_, png_, property_, XCB_CURRENT_TIME);
    xcb_flush(client_.get());
}

Reply<xcb_get_property_reply_t> ClipboardWatch::takeProperty() {
    const auto cookie =
        xcb_get_property(client_.get(), 1, window_, property_, XCB_ATOM_ANY, 0, 1U << 28);
    return Reply<xcb_get_property_reply_t>(xcb_get_property_reply(client_.get(), cookie, nullptr));
}

void ClipboardWatch::handleAnswer() {
    const auto reply = takeProperty();
    if (!reply) {
        return;
    }
    if (reply->type == incremental_) {
        transfer_ = Transfer::inPieces;
        return;
    }
    receivedBytes_ = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    receivedAt_ = now();
    transfer_ = Transfer::none;
}

void ClipboardWatch::handlePiece() {
    const auto reply = takeProperty();
    if (!reply || reply->type == incremental_ || reply->type == XCB_ATOM_NONE) {
        // The announcement itself, whose event came behind its answer.
        return;
    }
    const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    receivedBytes_ += length;
    if (length == 0) {
        receivedAt_ = now();
        transfer_ = Transfer::none;
    }
}

void ClipboardWatch::restart() {
    drain();
    transfer_ = Transfer::none;
    ownedAt_.reset();
    receivedAt_.reset();
    receivedBytes_ = 0;
}

}  // namespace latency
