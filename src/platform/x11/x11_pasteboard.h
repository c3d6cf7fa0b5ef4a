#pragma once

#include <xcb/xcb.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "base/main_queue.h"
#include "base/result.h"
#include "capture/pasteboard.h"
#include "platform/x11/clipboard_manager.h"
#include "platform/x11/connection.h"
#include "platform/x11/selection_contents.h"
#include "platform/x11/selection_owner.h"
#include "platform/x11/selection_transfers.h"

namespace platform::x11 {

/// The general pasteboard: the CLIPBOARD selection, owned by a window of this program that is never
/// shown. Holds a picture only as long as it is offered, or still on its way to somebody.
/// Main thread.
class X11Pasteboard final : public capture::Pasteboard {
  public:
    /// `connection` and `mainQueue` must outlive the pasteboard. Pictures are offered as PNG and,
    /// by `converter`, in the forms that older programs take. `pieceSize` is the largest value in
    /// bytes that is handed over at once.
    static base::Result<std::unique_ptr<X11Pasteboard>> create(
        Connection& connection, base::MainQueue& mainQueue, ImageConverter converter,
        std::size_t pieceSize = SelectionTransfers::defaultPieceSize);
    ~X11Pasteboard() override;
    X11Pasteboard(const X11Pasteboard&) = delete;
    X11Pasteboard& operator=(const X11Pasteboard&) = delete;

    void clearContents() override;
    void writeImage(std::shared_ptr<capture::CapturedImage> image) override;
    void writeString(const std::string& text) override;

    /// Asks the clipboard manager to keep the contents beyond the end of this program, and calls
    /// `done` exactly once: before returning when there is no manager or nothing to keep, else when
    /// the manager has answered or a second has passed. Does not block; the event loop must go on,
    /// because the manager now fetches the contents.
    void storeForExit(std::function<void()> done);

  private:
    X11Pasteboard(Connection& connection, base::MainQueue& mainQueue, ImageConverter converter,
                  std::size_t pieceSize, xcb_window_t window);
    Connection::EventVerdict handleEvent(const xcb_generic_event_t& event);

    Connection& connection_;
    ImageConverter converter_;
    xcb_window_t window_;
    SelectionTransfers transfers_;
    SelectionOwner owner_;
    ClipboardManager manager_;
    Connection::Subscription subscription_;
};

}  // namespace platform::x11
