#include "platform/x11/x11_workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <utility>

#include "desktop/desktop.h"
#include "platform/platform.h"
#include "platform/x11/window_owner.h"

namespace platform::x11 {
namespace {

using testing::ElementsAre;
using testing::Optional;

/// A desktop with the workspace on it, which knows one application by name.
class X11WorkspaceTest : public testing::Test {
  protected:
    explicit X11WorkspaceTest(desktop::WindowManager manager = desktop::WindowManager::openbox)
        : desktop_({.windowManager = manager}) {}

    /// The process in front once it is `expected`, else the last answer.
    std::optional<std::int32_t> frontmost(std::int32_t expected) {
        std::optional<overlay::Application> application;
        desktop::waitUntil([&] {
            application = workspace_.frontmostApplication();
            return application && application->processIdentifier == expected;
        });
        return application ? std::optional(application->processIdentifier) : std::nullopt;
    }
    std::optional<std::string> name() {
        const auto application = workspace_.frontmostApplication();
        return application ? application->localizedName : std::nullopt;
    }
    void setProperty(xcb_window_t window, const char* property, const char* type, int format,
                     std::uint32_t length, const void* data) {
        xcb_change_property(desktop_.client().get(), XCB_PROP_MODE_REPLACE, window,
                            desktop_.client().atom(property), desktop_.client().atom(type),
                            static_cast<std::uint8_t>(format), length, data);
        desktop_.client().synchronize();
    }
    void setText(xcb_window_t window, const char* property, const std::string& text,
                 const char* type = "STRING") {
        setProperty(window, property, type, 8, static_cast<std::uint32_t>(text.size()),
                    text.data());
    }
    void setNumber(xcb_window_t window, const char* property, const char* type,
                   std::uint32_t number) {
        setProperty(window, property, type, 32, 1, &number);
    }
    void focus(xcb_window_t window) {
        xcb_set_input_focus(desktop_.client().get(), XCB_INPUT_FOCUS_NONE, window,
                            XCB_CURRENT_TIME);
        desktop_.client().synchronize();
    }
    /// A window of the overlay, on top of everything, with the input focus.
    xcb_window_t makeOverlayWindow() {
        const xcb_window_t window = xcb_generate_id(connection_->get());
        const std::uint32_t overrideRedirect = 1;
        xcb_create_window(connection_->get(), XCB_COPY_FROM_PARENT, window, connection_->root(), 0,
                          0, 1280, 800, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
        xcb_map_window(connection_->get(), window);
        xcb_set_input_focus(connection_->get(), XCB_INPUT_FOCUS_NONE, window, XCB_CURRENT_TIME);
        (void)connection_->serverTime();
        return window;
    }

    const std::int32_t thisProcess_ = static_cast<std::int32_t>(::getpid());
    desktop::Desktop desktop_;
    std::unique_ptr<Connection> connection_ =
        std::move(Connection::open(desktop_.displayName()).value());
    std::vector<std::string> asked_;
    X11Workspace workspace_{
        *connection_,
        [this](const std::vector<std::string>& identifiers) -> std::optional<std::string> {
            asked_ = identifiers;
            return identifiers.front() == "org.example.Draw" ? std::optional<std::string>("Drawing")
                                                             : std::nullopt;
        }};
};

class WithoutWindowManager : public X11WorkspaceTest {
  protected:
    WithoutWindowManager() : X11WorkspaceTest(desktop::WindowManager::none) {}
    static constexpr auto unmanaged = desktop::TestWindowOptions::Management::unmanaged;
};

TEST_F(X11WorkspaceTest, an_empty_desktop_has_nothing_in_front) {
    EXPECT_FALSE(workspace_.frontmostApplication().has_value());
}

TEST_F(X11WorkspaceTest, the_active_window_belongs_to_the_application_in_front) {
    desktop::TestWindow ours(desktop_.displayName(), {.x = 50, .y = 50});
    ours.focus();
    EXPECT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
    const auto other = desktop_.start("xterm", {"xterm", "-geometry", "40x10+700+400"});
    EXPECT_THAT(frontmost(other->pid()), Optional(other->pid()));
    EXPECT_THAT(name(), Optional(std::string("XTerm")));
    ours.focus();
    EXPECT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
}

TEST_F(X11WorkspaceTest, the_server_knows_the_process_better_than_the_window) {
    desktop::TestWindow window(desktop_.displayName(), {});
    window.focus();
    setNumber(window.id(), "_NET_WM_PID", "CARDINAL", 1);
    EXPECT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
}

TEST_F(X11WorkspaceTest, the_name_is_looked_up_by_everything_the_window_says_about_itself) {
    desktop::TestWindow window(desktop_.displayName(), {});
    window.focus();
    setText(window.id(), "_GTK_APPLICATION_ID", "org.example.Draw", "UTF8_STRING");
    setText(window.id(), "WM_CLASS", std::string("draw\0Draw\0", 10));
    ASSERT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
    EXPECT_THAT(name(), Optional(std::string("Drawing")));
    EXPECT_THAT(asked_, ElementsAre("org.example.Draw", "Draw", "draw", "x11_workspace_test"));
}

TEST_F(X11WorkspaceTest, an_application_without_a_file_is_named_by_its_class) {
    desktop::TestWindow window(desktop_.displayName(), {});
    window.focus();
    setText(window.id(), "WM_CLASS", std::string("tool\0Tool\0", 10));
    ASSERT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
    EXPECT_THAT(name(), Optional(std::string("Tool")));
}

TEST_F(X11WorkspaceTest, an_application_that_says_nothing_has_no_name) {
    desktop::TestWindow window(desktop_.displayName(), {});
    window.focus();
    ASSERT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
    EXPECT_EQ(name(), std::nullopt);
}

TEST_F(X11WorkspaceTest, hostile_properties_are_passed_over) {
    desktop::TestWindow window(desktop_.displayName(), {});
    window.focus();
    ASSERT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
    const std::uint32_t numbers[] = {0xFFFFFFFF, 0, 7};
    setProperty(window.id(), "WM_CLASS", "CARDINAL", 32, 3, numbers);
    setProperty(window.id(), "_GTK_APPLICATION_ID", "WINDOW", 32, 3, numbers);
    setText(window.id(), "_NET_WM_PID", "not a number");
    EXPECT_EQ(name(), std::nullopt);
    setText(window.id(), "WM_CLASS", std::string("one\0Two\nLine\0three\0", 19));
    EXPECT_THAT(name(), Optional(std::string("Two Line")));
    setText(window.id(), "WM_CLASS", "no zero byte at all");
    EXPECT_EQ(name(), std::nullopt);
    setText(window.id(), "WM_CLASS", std::string(100000, '\0'));
    EXPECT_EQ(name(), std::nullopt);
}

TEST_F(X11WorkspaceTest, the_overlay_never_counts) {
    desktop::TestWindow window(desktop_.displayName(), {});
    window.focus();
    ASSERT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
    const xcb_window_t overlayWindow = makeOverlayWindow();
    setNumber(desktop_.client().root(), "_NET_ACTIVE_WINDOW", "WINDOW", overlayWindow);
    desktop_.input().moveTo({100, 100});
    EXPECT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
}

TEST_F(X11WorkspaceTest, an_active_window_that_is_gone_does_not_count) {
    setNumber(desktop_.client().root(), "_NET_ACTIVE_WINDOW", "WINDOW", 0x00200001);
    EXPECT_FALSE(workspace_.frontmostApplication().has_value());
    setText(desktop_.client().root(), "_NET_ACTIVE_WINDOW", "garbage");
    EXPECT_FALSE(workspace_.frontmostApplication().has_value());
}

TEST_F(WithoutWindowManager, the_input_focus_decides) {
    desktop::TestWindow window(desktop_.displayName(), {.management = unmanaged});
    const auto other = desktop_.start("xterm", {"xterm", "-geometry", "40x10+700+400"});
    ASSERT_TRUE(
        desktop::waitUntil([&] { return desktop_.client().mappedTopLevels().size() == 2; }));
    focus(desktop_.client().mappedTopLevels().back());
    EXPECT_THAT(frontmost(other->pid()), Optional(other->pid()));
    window.focus();
    EXPECT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
}

TEST_F(WithoutWindowManager, the_word_of_a_window_manager_that_ended_does_not_count) {
    const auto other = desktop_.start("xterm", {"xterm", "-geometry", "40x10+700+400"});
    ASSERT_TRUE(desktop::waitUntil([&] { return !desktop_.client().mappedTopLevels().empty(); }));
    const xcb_window_t terminal = desktop_.client().mappedTopLevels().back();
    desktop::TestWindow window(desktop_.displayName(), {.management = unmanaged});
    window.focus();
    setNumber(desktop_.client().root(), "_NET_ACTIVE_WINDOW", "WINDOW", terminal);
    setNumber(desktop_.client().root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", 0x00200001);
    EXPECT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
}

TEST_F(WithoutWindowManager, without_a_focus_the_window_under_the_pointer_decides) {
    desktop::TestWindow window(desktop_.displayName(),
                               {.x = 200, .y = 200, .management = unmanaged});
    focus(XCB_INPUT_FOCUS_POINTER_ROOT);
    desktop_.input().moveTo({10, 10});
    EXPECT_FALSE(workspace_.frontmostApplication().has_value());
    desktop_.input().moveTo({300, 300});
    EXPECT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
}

TEST_F(WithoutWindowManager, the_window_under_the_overlay_decides) {
    desktop::TestWindow window(desktop_.displayName(),
                               {.x = 200, .y = 200, .management = unmanaged});
    makeOverlayWindow();
    desktop_.input().moveTo({300, 300});
    EXPECT_THAT(frontmost(thisProcess_), Optional(thisProcess_));
    desktop_.input().moveTo({10, 10});
    EXPECT_FALSE(workspace_.frontmostApplication().has_value());
}

TEST_F(WithoutWindowManager, owners_come_in_the_order_of_the_windows_and_only_ours_are_ours) {
    const auto other = desktop_.start("xterm", {"xterm", "-geometry", "40x10+700+400"});
    ASSERT_TRUE(desktop::waitUntil([&] { return !desktop_.client().mappedTopLevels().empty(); }));
    const xcb_window_t terminal = desktop_.client().mappedTopLevels().back();
    setText(terminal, "_GTK_APPLICATION_ID", applicationIdentifier, "UTF8_STRING");
    desktop::TestWindow window(desktop_.displayName(), {.management = unmanaged});
    setText(window.id(), "WM_CLASS", std::string("draw\0Draw\0", 10));
    const auto owners = ownersOf(*connection_, {terminal, window.id(), 0x00200001, terminal});
    ASSERT_EQ(owners.size(), 4U);
    EXPECT_THAT(owners[0].processID, Optional(static_cast<std::int32_t>(other->pid())));
    EXPECT_EQ(owners[0].applicationID, std::nullopt);
    EXPECT_THAT(owners[1].processID, Optional(thisProcess_));
    EXPECT_THAT(owners[1].applicationID, Optional(std::string(applicationIdentifier)));
    EXPECT_THAT(owners[1].className, Optional(std::string("Draw")));
    EXPECT_EQ(owners[3].processID, owners[0].processID);
    EXPECT_TRUE(ownersOf(*connection_, {}).empty());
}

}  // namespace
}  // namespace platform::x11
