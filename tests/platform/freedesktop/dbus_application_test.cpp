#include <gmock/gmock.h>

#include "desktop/desktop.h"

namespace {

using desktop::Desktop;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class BusApplication : public testing::Test {
  protected:
    std::unique_ptr<desktop::Process> start(const std::string& name) {
        return desktop_.start(name, {LUMAFRAME_BUS_PROBE, "application"});
    }
    std::string call(const std::string& method, const std::vector<std::string>& arguments) {
        std::vector<std::string> command{"gdbus",
                                         "call",
                                         "--session",
                                         "--dest",
                                         "app.lumaframe.Lumaframe",
                                         "--object-path",
                                         "/app/lumaframe/Lumaframe",
                                         "--method",
                                         method};
        command.insert(command.end(), arguments.begin(), arguments.end());
        auto gdbus = desktop_.start("gdbus" + std::to_string(++callCount_), command);
        gdbus->waitForExit();
        const auto lines = gdbus->errorLines();
        return lines.empty() ? "" : lines.front();
    }

    Desktop desktop_{{.windowManager = desktop::WindowManager::none}};
    int callCount_ = 0;
};

TEST_F(BusApplication, the_actions_that_desktops_bind_keys_to_arrive) {
    const auto application = start("application");
    application->waitForLine("first");
    desktop_.bus({"activate-action", "screenshot"});
    application->waitForLine("action screenshot");
    desktop_.bus({"activate-action", "recognize-text"});
    application->waitForLine("action recognize-text");
    desktop_.bus({"activate"});
    application->waitForLine("activated");
}

TEST_F(BusApplication, a_second_start_activates_the_first_and_ends_with_success) {
    const auto first = start("first");
    first->waitForLine("first");
    const auto second = start("second");
    EXPECT_EQ(second->waitForExit(), 0);
    EXPECT_THAT(second->outputLines(), ElementsAre("second"));
    EXPECT_THAT(first->outputLines(), ElementsAre("first", "activated"));
}

TEST_F(BusApplication, a_second_start_beside_a_first_that_hangs_ends_too) {
    const auto first = start("first");
    first->waitForLine("first");
    first->signal(SIGSTOP);
    const auto second = start("second");
    EXPECT_EQ(second->waitForExit(std::chrono::seconds(10)), 0);
    first->signal(SIGCONT);
}

TEST_F(BusApplication, the_next_start_after_the_end_of_the_first_is_a_first_again) {
    auto first = start("first");
    first->waitForLine("first");
    first->end();
    start("next")->waitForLine("first");
}

TEST_F(BusApplication, without_a_session_bus_it_is_the_first) {
    const auto application =
        desktop_.start("lonely", {LUMAFRAME_BUS_PROBE, "application"},
                       {{"DBUS_SESSION_BUS_ADDRESS", ""}, {"XDG_RUNTIME_DIR", "/nonexistent"}});
    application->waitForLine("first");
}

TEST_F(BusApplication, an_action_that_does_not_exist_is_an_error_and_calls_nothing) {
    const auto application = start("application");
    application->waitForLine("first");
    EXPECT_THAT(call("org.freedesktop.Application.ActivateAction", {"self-destruct", "[]", "{}"}),
                testing::HasSubstr("InvalidArgs"));
    EXPECT_THAT(application->outputLines(), ElementsAre("first"));
}

TEST_F(BusApplication, calls_with_other_arguments_are_refused) {
    const auto application = start("application");
    application->waitForLine("first");
    desktop_
        .start("send", {"dbus-send", "--session", "--print-reply", "--dest=app.lumaframe.Lumaframe",
                        "/app/lumaframe/Lumaframe", "org.freedesktop.Application.ActivateAction",
                        "int32:1"})
        ->waitForExit();
    desktop_
        .start("send2",
               {"dbus-send", "--session", "--print-reply", "--dest=app.lumaframe.Lumaframe",
                "/app/lumaframe/Lumaframe", "org.freedesktop.Application.Activate"})
        ->waitForExit();
    EXPECT_THAT(application->outputLines(), ElementsAre("first"));
    EXPECT_TRUE(application->isRunning());
}

TEST_F(BusApplication, being_asked_to_open_files_is_being_activated) {
    const auto application = start("application");
    application->waitForLine("first");
    EXPECT_EQ(call("org.freedesktop.Application.Open", {"['file:///etc/passwd']", "{}"}), "");
    application->waitForLine("activated");
}

}  // namespace
