#include "journeys/permissions_panel.h"

#include <algorithm>
#include <stdexcept>

namespace journeys {

namespace {

bool isButton(const desktop::Accessible& object) {
    return object.role == "push button" || object.role == "button";
}

}  // namespace

void PermissionsPanel::waitUntilOpen() {
    session_.require("The permissions window", [this] {
        const auto window = session_.windowWithRole("permissions");
        return window && session_.activeWindow() == *window;
    });
    session_.require("The permissions window's accessible objects", [this] {
        const auto all = objects();
        return std::ranges::any_of(all, isButton);
    });
    session_.waitUntilStill();
}

std::vector<desktop::Accessible> PermissionsPanel::everything() {
    std::vector<desktop::Accessible> found;
    int windowDepth = -1;
    for (desktop::Accessible& object : session_.desktop().accessibles()) {
        if (object.depth <= windowDepth) {
            windowDepth = -1;
        }
        if (windowDepth < 0 && object.name.starts_with("Permissions")) {
            windowDepth = object.depth;
        }
        if (windowDepth >= 0 && object.isShowing()) {
            found.push_back(std::move(object));
        }
    }
    return found;
}

std::vector<desktop::Accessible> PermissionsPanel::objects() {
    auto found = everything();
    std::erase_if(found, [](const desktop::Accessible& object) {
        return object.role != "label" && !isButton(object);
    });
    return found;
}

std::vector<std::string> PermissionsPanel::status(const std::string& permission) {
    std::vector<std::string> parts;
    for (const desktop::Accessible& object : objects()) {
        if (object.description == permission) {
            parts.push_back(object.name);
        }
    }
    return parts;
}

void PermissionsPanel::waitForStatus(const std::string& permission, const std::string& wanted) {
    session_.require(permission + ": " + wanted, [&] {
        const auto parts = status(permission);
        return !parts.empty() && parts.front() == wanted;
    });
}

desktop::Accessible PermissionsPanel::action() {
    for (const desktop::Accessible& object : objects()) {
        if (isButton(object) && object.name != "Open Settings") {
            return object;
        }
    }
    throw std::runtime_error("The permissions window has no action.");
}

void PermissionsPanel::waitForAction(const std::string& name) {
    session_.require("The button " + name, [&] { return action().name == name; });
    // It may be laid out anew, and takes no click before a person can have seen it.
    session_.waitUntilStill();
    desktop::staysTrue([] { return true; }, std::chrono::milliseconds(400));
}

desktop::Accessible PermissionsPanel::icon() {
    for (const desktop::Accessible& object : everything()) {
        if (object.role == "graphic" && object.name == "Lumaframe") {
            return object;
        }
    }
    throw std::runtime_error("The permissions window has no icon.");
}

desktop::Accessible PermissionsPanel::settingsButton(const std::string& permission) {
    for (const desktop::Accessible& object : objects()) {
        if (isButton(object) && object.description == permission) {
            return object;
        }
    }
    throw std::runtime_error("There is no button for " + permission + ".");
}

}  // namespace journeys
