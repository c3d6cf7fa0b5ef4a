#pragma once

#include <gtest/gtest.h>
#include <xcb/res.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/desktop.h"
#include "doubles/manual_main_queue.h"
#include "overlay/overlay_surface.h"
#include "platform/x11/connection.h"
#include "platform/x11/overlay_drawings.h"
#include "platform/x11/x11_displays.h"
#include "platform/x11/x11_overlay_stage.h"
#include "platform/x11/x11_overlay_surface_factory.h"
#include "platform/x11/x11_pointer.h"

/// What the tests of the overlay's surfaces stand on: a real server and the real adapters.
namespace surface_rig {

/// Writes down what a surface reports, and does with it what the test wants.
class RecordingInput final : public overlay::SurfaceInput {
  public:
    struct Report {
        std::string what;
        base::Point location;
        std::uint32_t modifierFlags = 0;
    };

    void mouseEntered() override { add("entered", {}); }
    void mouseExited() override { add("exited", {}); }
    void mouseMoved(const overlay::MouseEvent& event) override { add("moved", event); }
    void mouseDown(const overlay::MouseEvent& event) override { add("down", event); }
    void mouseDragged(const overlay::MouseEvent& event) override { add("dragged", event); }
    void mouseUp(const overlay::MouseEvent& event) override { add("up", event); }
    overlay::KeyVerdict keyDown(std::uint32_t keyCode) override {
        add("key " + std::to_string(keyCode), {});
        return overlay::KeyVerdict::handled;
    }
    void cancelOperation() override { add("cancel", {}); }

    [[nodiscard]] bool has(const std::string& what) const { return last(what) != nullptr; }
    [[nodiscard]] const Report* last(const std::string& what) const {
        for (auto report = reports.rbegin(); report != reports.rend(); ++report) {
            if (report->what == what) {
                return &*report;
            }
        }
        return nullptr;
    }

    std::vector<Report> reports;
    /// Called after each report.
    std::function<void(const Report&)> reaction;

  private:
    void add(const std::string& what, const overlay::MouseEvent& event) {
        const Report report{what, event.location, event.modifierFlags};
        reports.push_back(report);
        if (reaction) {
            const auto react = reaction;
            react(report);
        }
    }
};

class Rig {
  public:
    explicit Rig(const desktop::DesktopOptions& options = {}, double scaleFactor = 1.0)
        : scale(scaleFactor),
          desktop(options),
          connection(std::move(platform::x11::Connection::open(desktop.displayName()).value())),
          displays(*connection, queue, [this](const std::string&) { return scale; }),
          pointer(*connection, displays),
          stage(*connection, queue),
          keyboardMapping(
              std::move(platform::x11::KeyboardMapping::create(*connection, queue).value())),
          factory(std::move(platform::x11::X11OverlaySurfaceFactory::create(
                                *connection, displays, pointer, stage, *keyboardMapping, rasterizer)
                                .value())) {
        queue.allowLeftovers();
        errorWatch_ = connection->subscribe([this](const xcb_generic_event_t& event) {
            if (event.response_type == 0) {
                errors.push_back(reinterpret_cast<const xcb_generic_error_t&>(event).error_code);
            }
            return platform::x11::Connection::EventVerdict::pass;
        });
    }

    /// One turn of the event loop.
    void turn() {
        connection->dispatchPendingEvents();
        queue.runAll();
        connection->flush();
    }
    /// Turns until `condition` holds.
    [[nodiscard]] bool waitUntil(const std::function<bool()>& condition) {
        return desktop::waitUntil([&] {
            turn();
            return condition();
        });
    }
    /// Everything that the server had to say until now has been handled.
    void settle() {
        (void)connection->serverTime();
        turn();
    }
    std::unique_ptr<overlay::OverlaySurface> open(RecordingInput& input, std::size_t display = 0) {
        auto surface = factory->create(displays.screens().at(display), {}, input);
        surface->makeKeyAndOrderFront();
        if (keyboard == Keyboard::heldByAnother) {
            factory->takeFocus();
        }
        settle();
        return surface;
    }
    /// The overlay's windows over a display, as another program finds them.
    [[nodiscard]] std::vector<xcb_window_t> overlays(std::size_t display = 0) {
        const auto& native = displays.layout().displays().at(display).native;
        return desktop.client().mappedOverlays(native.x, native.y, native.width, native.height);
    }

    /// How many windows, pixmaps, pictures and so on the server keeps for the adapters.
    [[nodiscard]] std::size_t resourceCount() {
        const desktop::Reply<xcb_res_query_client_resources_reply_t> reply(
            xcb_res_query_client_resources_reply(
                desktop.client().get(),
                xcb_res_query_client_resources(desktop.client().get(),
                                               xcb_get_setup(connection->get())->resource_id_base),
                nullptr));
        std::size_t count = 0;
        auto types = xcb_res_query_client_resources_types_iterator(reply.get());
        for (; types.rem > 0; xcb_res_type_next(&types)) {
            count += types.data->count;
        }
        return count;
    }

    enum class Keyboard { heldByAnother, ours } keyboard = Keyboard::heldByAnother;
    double scale;
    desktop::Desktop desktop;
    doubles::ManualMainQueue queue;
    std::unique_ptr<platform::x11::Connection> connection;
    platform::x11::X11Displays displays;
    platform::x11::X11Pointer pointer;
    platform::x11::X11OverlayStage stage;
    std::unique_ptr<platform::x11::KeyboardMapping> keyboardMapping;
    overlay_drawings::BlockRasterizer rasterizer;
    std::unique_ptr<platform::x11::X11OverlaySurfaceFactory> factory;
    /// The codes of all errors that the server reported.
    std::vector<std::uint8_t> errors;

  private:
    platform::x11::Connection::Subscription errorWatch_;
};

/// The pixels of a window itself, whatever lies over it.
inline std::vector<std::uint32_t> readWindow(const desktop::XClient& client, xcb_window_t window,
                                             int width, int height) {
    const desktop::Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        client.get(),
        xcb_get_image(client.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0,
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), ~0U),
        nullptr));
    if (!reply) {
        return {};
    }
    const auto* pixels = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply.get()));
    return {pixels, pixels + static_cast<std::ptrdiff_t>(width) * height};
}

}  // namespace surface_rig
