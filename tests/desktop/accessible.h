#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/input_driver.h"

namespace desktop {

/// One object of a program as an assistive program reads it over AT-SPI.
struct Accessible {
    /// 0 for the program itself; its parent is the object before it with a smaller depth.
    int depth = 0;
    std::string role;
    /// Native pixels from the top left of the screen.
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    std::uint64_t states = 0;
    std::string name;
    std::string description;

    [[nodiscard]] Place center() const { return {x + width / 2, y + height / 2}; }
    // Bits of StateType in AT-SPI's atspi-constants.h.
    [[nodiscard]] bool isChecked() const { return has(4); }
    [[nodiscard]] bool isFocusable() const { return has(11); }
    [[nodiscard]] bool isFocused() const { return has(12); }
    [[nodiscard]] bool isShowing() const { return has(25); }

  private:
    [[nodiscard]] bool has(unsigned bit) const { return (states >> bit & 1U) != 0; }
};

/// From what the test's D-Bus program prints for "accessibles".
std::vector<Accessible> parseAccessibles(std::string_view text);

}  // namespace desktop
