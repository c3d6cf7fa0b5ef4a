#include "platform/x11/x11_access.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/x11/x11_rig.h"

namespace {

using platform::x11::Connection;
using platform::x11::X11Access;

class X11AccessTest : public testing::Test {
  protected:
    static desktop::DesktopOptions bare() {
        desktop::DesktopOptions options;
        options.windowManager = desktop::WindowManager::none;
        return options;
    }

    desktop::Desktop desktop_{bare()};
};

TEST_F(X11AccessTest, an_ordinary_program_reads_the_screen_and_grabs_keys) {
    const auto connection = tests::connectTo(desktop_);
    const X11Access access(*connection);
    EXPECT_TRUE(access.canReadScreen());
    EXPECT_TRUE(access.canGrabKeys());
    EXPECT_FALSE(access.isXwayland());
}

TEST_F(X11AccessTest, the_probe_of_the_keys_leaves_none_behind) {
    const auto connection = tests::connectTo(desktop_);
    const auto other = tests::connectTo(desktop_);
    const X11Access access(*connection);
    EXPECT_TRUE(access.canGrabKeys());
    // A round trip: the server has carried out what came before.
    EXPECT_TRUE(access.canReadScreen());
    EXPECT_TRUE(X11Access(*other).canGrabKeys());
    EXPECT_TRUE(X11Access(*other).canReadScreen());
    EXPECT_TRUE(access.canGrabKeys());
}

TEST_F(X11AccessTest, while_another_program_holds_every_key_none_can_be_taken) {
    auto& other = desktop_.client();
    xcb_grab_key(other.get(), 0, other.root(), XCB_MOD_MASK_ANY, XCB_GRAB_ANY, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    other.synchronize();
    const auto connection = tests::connectTo(desktop_);
    const X11Access access(*connection);
    EXPECT_FALSE(access.canGrabKeys());
    EXPECT_TRUE(access.canReadScreen());
    xcb_ungrab_key(other.get(), XCB_GRAB_ANY, other.root(), XCB_MOD_MASK_ANY);
    other.synchronize();
    EXPECT_TRUE(access.canGrabKeys());
}

TEST_F(X11AccessTest, an_untrusted_program_may_do_neither) {
    ::setenv("XAUTHORITY", desktop_.makeUntrustedAuthority().c_str(), 1);
    const auto connection = tests::connectTo(desktop_);
    ::unsetenv("XAUTHORITY");
    const X11Access access(*connection);
    EXPECT_FALSE(access.canReadScreen());
    EXPECT_FALSE(access.canGrabKeys());
}

}  // namespace
