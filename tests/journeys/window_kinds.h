#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "journeys/overlay_colors.h"
#include "journeys/session.h"
#include "journeys/set_ups.h"

namespace journeys {

/// Window mode in one of the desktops, with windows of any kind.
class WindowKinds : public testing::TestWithParam<SetUp> {
  protected:
    WindowKinds() {
        session.writeSettings({{"captureShadows", false}});
        session.start();
    }
    static bool isLive() { return GetParam().compositor != desktop::Compositor::none; }
    std::unique_ptr<desktop::TestWindow> open(const desktop::TestWindowOptions& options) {
        auto window =
            std::make_unique<desktop::TestWindow>(session.desktop().displayName(), options);
        return window;
    }
    std::uint32_t pixel(Place place) { return session.screen({place.x, place.y, 1, 1}).pixels[0]; }
    /// Opens window mode with the pointer at `at` and waits until the window there is highlighted.
    void hover(Place at) {
        session.waitUntilStill();
        const std::uint32_t original = pixel(at);
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().tap(desktop::key::space);
        session.program().waitForLine(line::toggled, before);
        session.input().moveTo({at.x - 1, at.y});
        session.input().moveTo(at);
        session.require("The highlight", [&] { return isHighlighted(pixel(at), original); });
    }
    desktop::Png click() {
        const std::size_t before = session.mark();
        session.input().pressButton();
        session.input().releaseButton();
        session.waitForLine(line::windowCopied, before);
        const std::string path = session.waitForLine(line::saved, before);
        session.waitUntilClosed();
        return desktop::decodePng(desktop::readFile(path));
    }
    xcb_window_t windowTitled(const std::string& title) {
        auto& client = session.desktop().client();
        xcb_window_t found = XCB_WINDOW_NONE;
        session.require("The window \"" + title + "\"", [&] {
            const auto list = client.property(client.root(), "_NET_CLIENT_LIST")
                                  .value_or(std::vector<std::uint8_t>{});
            for (std::size_t index = 0; index + 4 <= list.size(); index += 4) {
                xcb_window_t window = XCB_WINDOW_NONE;
                std::memcpy(&window, list.data() + index, sizeof window);
                const auto name = client.property(window, "WM_NAME");
                if (name && std::string(name->begin(), name->end()) == title) {
                    found = window;
                }
            }
            return found != XCB_WINDOW_NONE && session.activeWindow() == found;
        });
        session.waitUntilStill();
        return found;
    }
    Area areaOf(xcb_window_t window) {
        auto& client = session.desktop().client();
        const desktop::Reply<xcb_get_geometry_reply_t> size(
            xcb_get_geometry_reply(client.get(), xcb_get_geometry(client.get(), window), nullptr));
        const desktop::Reply<xcb_translate_coordinates_reply_t> place(
            xcb_translate_coordinates_reply(
                client.get(), xcb_translate_coordinates(client.get(), window, client.root(), 0, 0),
                nullptr));
        return size && place ? Area{place->dst_x, place->dst_y, size->width, size->height} : Area{};
    }
    /// Left, right, top, bottom.
    std::array<int, 4> extentsOf(xcb_window_t window, const std::string& property) {
        std::array<int, 4> extents{};
        const auto bytes = session.desktop().client().property(window, property);
        if (bytes && bytes->size() == sizeof extents) {
            std::memcpy(extents.data(), bytes->data(), sizeof extents);
        }
        return extents;
    }
    void configure(xcb_window_t window, std::uint16_t mask,
                   const std::vector<std::uint32_t>& values) {
        auto& client = session.desktop().client();
        xcb_configure_window(client.get(), window, mask, values.data());
        client.synchronize();
    }

    Session session{
        {.windowManager = GetParam().windowManager, .compositor = GetParam().compositor}};
};

}  // namespace journeys
