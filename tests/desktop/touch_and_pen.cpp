#include "desktop/touch_and_pen.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "desktop/wait.h"

namespace desktop {
namespace {

// The messages of the server's driver, as its public header xf86-input-inputtest-protocol.h
// describes them.
enum class Message : std::uint32_t {
    clientVersion,
    waitForSync,
    motion,
    proximity,
    button,
    key,
    touch
};

struct Header {
    std::uint32_t length = 0;
    Message type{};
};

struct Valuators {
    std::uint32_t hasUnaccelerated = 0;
    std::array<std::uint8_t, 8> mask{};
    std::array<double, 64> values{};
    std::array<double, 64> unaccelerated{};
};

struct ClientVersion {
    Header header{0, Message::clientVersion};
    std::uint16_t major = 1;
    std::uint16_t minor = 1;
};
struct Motion {
    Header header{0, Message::motion};
    std::uint32_t isAbsolute = 1;
    Valuators valuators;
};
struct Proximity {
    Header header{0, Message::proximity};
    std::uint32_t isIn = 0;
    Valuators valuators;
};
struct Button {
    Header header{0, Message::button};
    std::int32_t isAbsolute = 1;
    std::int32_t button = 1;
    std::uint32_t isPress = 0;
    Valuators valuators;
};
/// As XInput 2 numbers them.
enum class TouchType : std::uint32_t { begin = 18, update = 19, end = 20 };
struct Touch {
    Header header{0, Message::touch};
    std::uint32_t finger = 0;
    TouchType type{};
    Valuators valuators;
};

constexpr std::size_t versionResponseSize = 12;

std::string deviceSection(const std::string& name, const std::string& type,
                          const std::filesystem::path& socket) {
    return "Section \"InputDevice\"\n  Identifier \"" + name +
           "\"\n  Driver \"inputtest\"\n  Option \"DeviceType\" \"" + type +
           "\"\n  Option \"SocketPath\" \"" + socket.string() + "\"\nEndSection\n";
}

constexpr const char* touchSocket = "touch.socket";
constexpr const char* penSocket = "pen.socket";

}  // namespace

std::string touchAndPenConfiguration(const std::filesystem::path& directory) {
    return deviceSection("touch", "Touch", directory / touchSocket) +
           deviceSection("pen", "PointerAbsoluteProximity", directory / penSocket) +
           "Section \"ServerLayout\"\n  Identifier \"layout\"\n  Screen \"screen\"\n"
           "  InputDevice \"touch\" \"SendCoreEvents\"\n"
           "  InputDevice \"pen\" \"SendCoreEvents\"\nEndSection\n";
}

template <typename Event>
void SocketDevice::send(Event event) {
    event.header.length = sizeof event;
    write(&event, sizeof event);
}

SocketDevice::SocketDevice(const std::filesystem::path& socket, int width, int height)
    : width_(width), height_(height) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socket.c_str(), sizeof address.sun_path - 1);
    descriptor_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    require("The connection to an input device", [&] {
        return ::connect(descriptor_, reinterpret_cast<const sockaddr*>(&address),
                         sizeof address) == 0;
    });
    ClientVersion version;
    send(version);
    awaitVersion();
}

SocketDevice::~SocketDevice() {
    ::close(descriptor_);
}

void SocketDevice::write(const void* bytes, std::size_t size) const {
    if (::send(descriptor_, bytes, size, MSG_NOSIGNAL) != static_cast<ssize_t>(size)) {
        throw std::runtime_error("The X server's input device takes nothing.");
    }
}

void SocketDevice::awaitVersion() const {
    std::array<char, versionResponseSize> response{};
    std::size_t received = 0;
    require("An answer of an input device", [&] {
        const ssize_t count =
            ::recv(descriptor_, response.data(), response.size() - received, MSG_DONTWAIT);
        received += count > 0 ? static_cast<std::size_t>(count) : 0;
        return received == response.size();
    });
}

template <typename Valuators>
void SocketDevice::setPlace(Valuators& valuators, Place place) const {
    constexpr double range = 65536;
    valuators.mask[0] = 3;
    valuators.values[0] = (place.x + 0.5) * range / width_;
    valuators.values[1] = (place.y + 0.5) * range / height_;
}

TouchDevice::TouchDevice(const std::filesystem::path& directory, int width, int height)
    : SocketDevice(directory / touchSocket, width, height) {}

void TouchDevice::begin(int finger, Place place) {
    Touch event;
    event.finger = static_cast<std::uint32_t>(finger);
    event.type = TouchType::begin;
    setPlace(event.valuators, place);
    send(event);
}

void TouchDevice::move(int finger, Place place) {
    Touch event;
    event.finger = static_cast<std::uint32_t>(finger);
    event.type = TouchType::update;
    setPlace(event.valuators, place);
    send(event);
}

void TouchDevice::end(int finger, Place place) {
    Touch event;
    event.finger = static_cast<std::uint32_t>(finger);
    event.type = TouchType::end;
    setPlace(event.valuators, place);
    send(event);
}

PenDevice::PenDevice(const std::filesystem::path& directory, int width, int height)
    : SocketDevice(directory / penSocket, width, height) {}

void PenDevice::approach(Place place) {
    Proximity event;
    event.isIn = 1;
    setPlace(event.valuators, place);
    send(event);
    move(place);
}

void PenDevice::leave(Place place) {
    Proximity event;
    setPlace(event.valuators, place);
    send(event);
}

void PenDevice::move(Place place) {
    Motion event;
    setPlace(event.valuators, place);
    send(event);
}

void PenDevice::pressTip() {
    Button event;
    event.isPress = 1;
    send(event);
}

void PenDevice::releaseTip() {
    send(Button{});
}

}  // namespace desktop
