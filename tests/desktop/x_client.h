#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
/// A reply or event of the X server, freed with `free` as libxcb asks for.
template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

/// A test's own connection to an X server: what another program of the desktop would see and do.
class XClient {
  public:
    /// An empty name is the display of $DISPLAY. Throws std::runtime_error when the server does not
    /// answer.
    explicit XClient(const std::string& displayName);
    ~XClient();
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }
    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
    [[nodiscard]] xcb_window_t root() const { return screen_->root; }
    [[nodiscard]] xcb_atom_t atom(const std::string& name) const;
    [[nodiscard]] xcb_window_t selectionOwner(const std::string& selection) const;
    /// A property's bytes; nothing when the window does not have it. `type` 0 takes any.
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> property(xcb_window_t window,
                                                                    const std::string& name) const;
    /// A property's first 32-bit value.
    [[nodiscard]] std::optional<std::uint32_t> value(xcb_window_t window,
                                                     const std::string& name) const;
    /// A round trip: everything sent before has been carried out by the server.
    void synchronize() const;
    /// The next event that has arrived, null for none.
    [[nodiscard]] Reply<xcb_generic_event_t> pollEvent() const;

    /// The input focus of the moment.
    [[nodiscard]] xcb_window_t inputFocus() const;
    /// The windows that are direct children of the root, bottom to top, mapped ones only.
    [[nodiscard]] std::vector<xcb_window_t> mappedTopLevels() const;
    /// The program's mapped override-redirect windows that are exactly as large as the given
    /// rectangle: an overlay over one display.
    [[nodiscard]] std::vector<xcb_window_t> mappedOverlays(int x, int y, int width,
                                                           int height) const;

  private:
    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
};

}  // namespace desktop
