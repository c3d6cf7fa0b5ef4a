#pragma once

#include <filesystem>
#include <string>

#include "desktop/input_driver.h"

namespace desktop {

/// What a server of the kind `x11WithTouchAndPen` has: real input devices of the X server, which
/// are moved through sockets (its driver "inputtest").
///
/// The sections of its configuration, with the sockets in `directory`.
std::string touchAndPenConfiguration(const std::filesystem::path& directory);

/// A device of such a server, for a screen of `width` x `height` pixels. Every call returns when
/// the server has carried it out. Throws std::runtime_error when the server does not answer.
class SocketDevice {
  public:
    SocketDevice(const std::filesystem::path& socket, int width, int height);
    ~SocketDevice();
    SocketDevice(const SocketDevice&) = delete;
    SocketDevice& operator=(const SocketDevice&) = delete;

  protected:
    template <typename Event>
    void send(Event event);
    /// Sets the two axes of the place: 0 to 65535 over the whole screen.
    template <typename Valuators>
    void setPlace(Valuators& valuators, Place place) const;

  private:
    void write(const void* bytes, std::size_t size) const;
    void awaitVersion() const;

    int descriptor_ = -1;
    int width_;
    int height_;
};

/// A touch screen.
class TouchDevice : public SocketDevice {
  public:
    TouchDevice(const std::filesystem::path& directory, int width, int height);
    void begin(int finger, Place place);
    void move(int finger, Place place);
    void end(int finger, Place place);
};

/// A pen that knows when it comes near. Its tip is button 1.
class PenDevice : public SocketDevice {
  public:
    PenDevice(const std::filesystem::path& directory, int width, int height);
    void approach(Place place);
    void leave(Place place);
    void move(Place place);
    void pressTip();
    void releaseTip();
};

}  // namespace desktop
