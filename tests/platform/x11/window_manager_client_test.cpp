#include "platform/x11/window_manager_client.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "desktop/desktop.h"

namespace {

using app::ActivationPolicy;
using platform::x11::Connection;
using platform::x11::WindowManagerClient;

class WindowManagerClientTest : public testing::Test {
  protected:
    [[nodiscard]] bool skipsTaskbar(xcb_window_t window) const {
        const auto bytes = desktop_.client().property(window, "_NET_WM_STATE");
        if (!bytes || bytes->empty()) {
            return false;
        }
        std::vector<std::uint32_t> states(bytes->size() / 4);
        std::memcpy(states.data(), bytes->data(), states.size() * 4);
        const auto holds = [&](const char* name) {
            return std::find(states.begin(), states.end(), desktop_.client().atom(name)) !=
                   states.end();
        };
        return holds("_NET_WM_STATE_SKIP_TASKBAR") && holds("_NET_WM_STATE_SKIP_PAGER");
    }

    mutable desktop::Desktop desktop_;
    std::unique_ptr<Connection> connection_ =
        std::move(Connection::open(desktop_.displayName()).value());
    WindowManagerClient windowManager_{*connection_};
};

TEST_F(WindowManagerClientTest, activating_a_window_takes_the_input_from_another_program) {
    desktop::TestWindow ours(desktop_.displayName(), {.title = "ours"});
    desktop::TestWindow other(desktop_.displayName(), {.x = 500, .title = "other", .seed = 2});
    other.focus();

    windowManager_.activate(ours.id());

    EXPECT_TRUE(desktop::waitUntil([&] {
        return desktop_.client().value(desktop_.client().root(), "_NET_ACTIVE_WINDOW") == ours.id();
    }));
}

TEST_F(WindowManagerClientTest, a_window_on_the_screen_leaves_the_task_bar_and_comes_back) {
    desktop::TestWindow window(desktop_.displayName(), {});

    windowManager_.setActivationPolicy(window.id(), ActivationPolicy::accessory);
    EXPECT_TRUE(desktop::waitUntil([&] { return skipsTaskbar(window.id()); }));

    windowManager_.setActivationPolicy(window.id(), ActivationPolicy::regular);
    EXPECT_TRUE(desktop::waitUntil([&] { return !skipsTaskbar(window.id()); }));
}

TEST_F(WindowManagerClientTest, a_window_that_is_not_mapped_yet_gets_its_policy_as_a_property) {
    desktop::XClient& client = desktop_.client();
    const xcb_window_t window = xcb_generate_id(client.get());
    xcb_create_window(client.get(), XCB_COPY_FROM_PARENT, window, client.root(), 0, 0, 10, 10, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const std::uint32_t above = client.atom("_NET_WM_STATE_ABOVE");
    xcb_change_property(client.get(), XCB_PROP_MODE_REPLACE, window, client.atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, 1, &above);
    client.synchronize();

    windowManager_.setActivationPolicy(window, ActivationPolicy::accessory);
    EXPECT_TRUE(desktop::waitUntil([&] { return skipsTaskbar(window); }));
    EXPECT_EQ(client.value(window, "_NET_WM_STATE"), above);

    windowManager_.setActivationPolicy(window, ActivationPolicy::regular);
    EXPECT_TRUE(desktop::waitUntil([&] { return !skipsTaskbar(window); }));
    EXPECT_EQ(client.value(window, "_NET_WM_STATE"), above);
}

/// A window manager at the moment at which it has mapped the window and has not said so yet.
TEST(HalfManagedWindow, gets_its_policy_from_the_window_manager_as_well) {
    desktop::Desktop desktop({.windowManager = desktop::WindowManager::none});
    const auto connection = std::move(Connection::open(desktop.displayName()).value());
    WindowManagerClient windowManager(*connection);
    desktop::XClient manager(desktop.displayName());
    const std::uint32_t redirect = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
    xcb_change_window_attributes(manager.get(), manager.root(), XCB_CW_EVENT_MASK, &redirect);
    const xcb_window_t window = xcb_generate_id(manager.get());
    xcb_create_window(manager.get(), XCB_COPY_FROM_PARENT, window, manager.root(), 0, 0, 10, 10, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(manager.get(), window);
    manager.synchronize();

    windowManager.setActivationPolicy(window, ActivationPolicy::accessory);

    std::vector<std::uint32_t> asked;
    EXPECT_TRUE(desktop::waitUntil([&] {
        while (const auto event = manager.pollEvent()) {
            if ((event->response_type & 0x7fU) == XCB_CLIENT_MESSAGE) {
                const auto* message =
                    reinterpret_cast<const xcb_client_message_event_t*>(event.get());
                EXPECT_EQ(message->window, window);
                EXPECT_EQ(message->type, manager.atom("_NET_WM_STATE"));
                asked.assign(message->data.data32, message->data.data32 + 3);
            }
        }
        return !asked.empty();
    }));
    EXPECT_EQ(asked, (std::vector<std::uint32_t>{1, manager.atom("_NET_WM_STATE_SKIP_TASKBAR"),
                                                 manager.atom("_NET_WM_STATE_SKIP_PAGER")}));
}

}  // namespace
