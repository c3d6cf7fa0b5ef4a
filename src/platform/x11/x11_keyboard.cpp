#include "platform/x11/x11_keyboard.h"

#include <utility>

namespace platform::x11 {

base::Result<std::unique_ptr<X11Keyboard>> X11Keyboard::create(Connection& connection,
                                                               base::MainQueue& mainQueue) {
    auto mapping = KeyboardMapping::create(connection, mainQueue);
    if (!mapping) {
        return mapping.error();
    }
    return std::unique_ptr<X11Keyboard>(
        new X11Keyboard(connection, mainQueue, std::move(mapping.value())));
}

X11Keyboard::X11Keyboard(Connection& connection, base::MainQueue& mainQueue,
                         std::unique_ptr<KeyboardMapping> mapping)
    : mapping_(std::move(mapping)),
      router_(connection, *mapping_),
      hotKeys_(connection, *mapping_, router_, mainQueue),
      tap_(router_, mainQueue) {}

}  // namespace platform::x11
