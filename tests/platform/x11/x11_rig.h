#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "desktop/desktop.h"
#include "doubles/manual_main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/native_geometry.h"

namespace tests {

/// Runs a connection's events and a manual main queue until something has happened. The queue's
/// time stands still: what comes true here came by an event and not by a limit that ran out.
bool runUntil(platform::x11::Connection& connection, doubles::ManualMainQueue& queue,
              const std::function<bool()>& condition);

/// The connection of the program under test to the X server of `desktop`.
std::unique_ptr<platform::x11::Connection> connectTo(const desktop::Desktop& desktop);

enum class PixelDepth : std::uint8_t { opaque = 24, withAlpha = 32 };

/// A plain window with one colour, unmanaged unless said otherwise, mapped at once.
struct PlainWindowOptions {
    platform::x11::NativeRect frame{};
    /// 0xAARRGGBB, the colours multiplied with the alpha.
    std::uint32_t background = 0;
    PixelDepth depth = PixelDepth::opaque;
    enum class Management { managed, unmanaged } management = Management::unmanaged;
};

/// Makes the window through `connection`, whoever that belongs to.
xcb_window_t makeWindow(xcb_connection_t* connection, const PlainWindowOptions& options);
/// Fills a part of the window.
void fill(xcb_connection_t* connection, xcb_window_t window, const platform::x11::NativeRect& area,
          std::uint32_t color);
/// Waits until a compositor really blends: it owns its selection before its first frame, and until
/// then the windows paint the screen themselves.
void awaitBlending(desktop::Desktop& desktop);
/// Sets a property of 32-bit numbers.
void setNumbers(const desktop::XClient& client, xcb_window_t window, const std::string& property,
                const std::string& type, const std::vector<std::uint32_t>& numbers);

}  // namespace tests
