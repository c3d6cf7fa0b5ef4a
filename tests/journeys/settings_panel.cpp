#include "journeys/settings_panel.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace journeys {

void SettingsPanel::waitUntilOpen() {
    session_.require("The settings window", [this] {
        const auto window = session_.windowWithRole("main");
        return window && session_.activeWindow() == *window;
    });
    session_.require("The settings window's accessible objects", [this] {
        const auto all = objects();
        return std::ranges::any_of(all, [](const auto& one) { return one.name == "Play sounds"; });
    });
    session_.waitUntilStill();
}

std::vector<desktop::Accessible> SettingsPanel::objects() {
    std::vector<desktop::Accessible> found;
    for (desktop::Accessible& object : session_.desktop().accessibles()) {
        static constexpr std::array roles{"check box", "push button", "label", "graphic"};
        if (object.isShowing() && std::ranges::find(roles, object.role) != roles.end()) {
            found.push_back(std::move(object));
        }
    }
    return found;
}

desktop::Accessible SettingsPanel::object(const std::string& role, const std::string& name,
                                          std::size_t index) {
    for (const desktop::Accessible& object : objects()) {
        if (object.role == role && object.name == name && index-- == 0) {
            return object;
        }
    }
    throw std::runtime_error("There is no " + role + " named " + name + ".");
}

void SettingsPanel::toggle(const std::string& label, std::size_t index) {
    const desktop::Accessible box = object("check box", label, index);
    session_.input().click(box.center());
    session_.require("The change of " + label,
                     [&] { return isChecked(label, index) != box.isChecked(); });
}

void SettingsPanel::chooseFolder(std::size_t index, const std::string& folder) {
    session_.input().click(object("push button", "Downloads", index).center());
    session_.require("The folder dialog", [this] {
        const auto all = session_.desktop().accessibles();
        return std::ranges::any_of(all, [](const auto& one) {
            return one.isFocused() && one.role == "text" && one.isShowing();
        });
    });
    session_.waitUntilStill();
    session_.input().chord({desktop::key::leftControl, desktop::key::a});
    type(folder);
    session_.input().tap(desktop::key::returnKey);
    session_.require("The end of the folder dialog", [this] {
        const auto window = session_.windowWithRole("main");
        return window && session_.activeWindow() == *window;
    });
}

void SettingsPanel::type(const std::string& text) {
    for (const char character : text) {
        const bool isCapital = character >= 'A' && character <= 'Z';
        const auto small =
            static_cast<std::uint32_t>(isCapital ? character - 'A' + 'a' : character);
        const std::uint8_t code = session_.input().keyCodeOf(small);
        if (isCapital) {
            session_.input().chord({desktop::key::leftShift, code});
        } else {
            session_.input().tap(code);
        }
    }
}

}  // namespace journeys
