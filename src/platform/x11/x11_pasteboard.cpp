#include "platform/x11/x11_pasteboard.h"

#include <utility>

namespace platform::x11 {

namespace {

xcb_window_t makeHiddenWindow(Connection& connection) {
    const xcb_window_t window = xcb_generate_id(connection.get());
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, connection.root(), -1, -1, 1,
                      1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    return window;
}

}  // namespace

base::Result<std::unique_ptr<X11Pasteboard>> X11Pasteboard::create(Connection& connection,
                                                                   base::MainQueue& mainQueue,
                                                                   ImageConverter converter,
                                                                   std::size_t pieceSize) {
    const xcb_window_t window = makeHiddenWindow(connection);
    connection.flush();
    if (connection.isLost()) {
        return base::Error{base::ErrorKind::unavailable,
                           "The clipboard is not there: the X server has gone."};
    }
    return std::unique_ptr<X11Pasteboard>(
        new X11Pasteboard(connection, mainQueue, std::move(converter), pieceSize, window));
}

X11Pasteboard::X11Pasteboard(Connection& connection, base::MainQueue& mainQueue,
                             ImageConverter converter, std::size_t pieceSize, xcb_window_t window)
    : connection_(connection),
      converter_(std::move(converter)),
      window_(window),
      transfers_(connection, mainQueue, pieceSize),
      owner_(connection, transfers_, window_, "CLIPBOARD"),
      manager_(connection, mainQueue, window_),
      subscription_(connection.subscribe(
          [this](const xcb_generic_event_t& event) { return handleEvent(event); })) {}

X11Pasteboard::~X11Pasteboard() {
    xcb_destroy_window(connection_.get(), window_);
    connection_.flush();
}

void X11Pasteboard::clearContents() {
    owner_.takeOver();
}

void X11Pasteboard::writeImage(std::shared_ptr<capture::CapturedImage> image) {
    owner_.offer(std::make_unique<ImageContents>(connection_, std::move(image), converter_));
    connection_.lateRequests().noteClaim();
}

void X11Pasteboard::writeString(const std::string& text) {
    owner_.offer(std::make_unique<TextContents>(connection_, text));
}

void X11Pasteboard::storeForExit(std::function<void()> done) {
    if (owner_.contents() == nullptr) {
        done();
        return;
    }
    manager_.save(owner_.contents()->lastingTargets(), std::move(done));
}

Connection::EventVerdict X11Pasteboard::handleEvent(const xcb_generic_event_t& event) {
    owner_.handleEvent(event);
    transfers_.handleEvent(event);
    manager_.handleEvent(event);
    return Connection::EventVerdict::pass;
}

}  // namespace platform::x11
