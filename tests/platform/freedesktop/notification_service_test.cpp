#include "platform/freedesktop/notification_service.h"

#include <gmock/gmock.h>

#include <csignal>
#include <optional>
#include <regex>
#include <set>

#include "desktop/desktop.h"
#include "platform/freedesktop/random_identifier.h"

namespace {

using desktop::Desktop;
using desktop::NotificationDaemon;
using platform::freedesktop::escapedForMarkup;
using platform::freedesktop::randomIdentifier;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* body = "Saved to <b>Shots</b> & more";

std::unique_ptr<desktop::Process> notify(Desktop& desktop) {
    return desktop.start("notify", {LUMAFRAME_BUS_PROBE, "notify", "Screenshot Captured", body});
}

Desktop& with(std::optional<Desktop>& desktop, NotificationDaemon daemon) {
    return desktop.emplace(desktop::DesktopOptions{.windowManager = desktop::WindowManager::none,
                                                   .notifications = daemon});
}

class Notifications : public testing::Test {
  protected:
    /// Starts a server of the probe's, which answers in its own way.
    std::unique_ptr<desktop::Process> serve(std::vector<std::string> command) {
        if (!desktop_) {
            with(desktop_, NotificationDaemon::none);
        }
        command.insert(command.begin(), LUMAFRAME_BUS_PROBE);
        auto server = desktop_->start("server" + std::to_string(++servers_), std::move(command));
        server->waitForLine("ready");
        return server;
    }
    std::unique_ptr<desktop::Process> post() {
        auto program = notify(*desktop_);
        program->waitForLine("posted");
        return program;
    }

    std::optional<Desktop> desktop_;

  private:
    int servers_ = 0;
};

TEST_F(Notifications, the_server_gets_title_and_body_with_its_markup_escaped) {
    Desktop& desktop = with(desktop_, NotificationDaemon::recorder);
    const auto program = notify(desktop);
    program->waitForLine("posted");
    desktop::require("the notification", [&] { return !desktop.notifications().empty(); });
    const auto notification = desktop.notifications().front();
    EXPECT_EQ(notification.application, "Lumaframe");
    EXPECT_EQ(notification.title, "Screenshot Captured");
    EXPECT_EQ(notification.body, "Saved to &lt;b&gt;Shots&lt;/b&gt; &amp; more");
    EXPECT_THAT(program->outputLines(), ElementsAre("returned", "granted", "posted"));
}

TEST_F(Notifications, a_real_daemon_shows_the_body_as_it_was_meant) {
    Desktop& desktop = with(desktop_, NotificationDaemon::dunst);
    const auto program = notify(desktop);
    program->waitForLine("posted");
    int calls = 0;
    const auto ask = [&](const std::string& question) {
        auto control = desktop.start("dunstctl" + std::to_string(++calls), {"dunstctl", question});
        control->waitForExit();
        std::string text;
        for (const auto& line : control->outputLines()) {
            text += line + "\n";
        }
        return text;
    };
    desktop::require("the notification in dunst",
                     [&] { return ask("count").find("displayed: 1") != std::string::npos; });
    ask("close-all");
    desktop::require("the notification in the history of dunst", [&] {
        // It says that it reads no markup, so that nothing is escaped for it.
        return ask("history").find(std::string("\"data\" : \"") + body) != std::string::npos;
    });
}

TEST_F(Notifications, without_a_server_the_answer_is_no_and_comes_later) {
    Desktop& desktop = with(desktop_, NotificationDaemon::none);
    const auto program = notify(desktop);
    program->waitForLine("denied");
    EXPECT_THAT(program->outputLines(), ElementsAre("returned", "denied"));
}

TEST_F(Notifications, without_a_bus_the_answer_is_no_and_comes_later) {
    Desktop& desktop = with(desktop_, NotificationDaemon::none);
    const auto program =
        desktop.start("notify", {LUMAFRAME_BUS_PROBE, "notify", "title", body},
                      {{"DBUS_SESSION_BUS_ADDRESS", ""}, {"XDG_RUNTIME_DIR", "/nonexistent"}});
    program->waitForLine("denied");
    EXPECT_THAT(program->outputLines(), ElementsAre("returned", "denied"));
}

TEST_F(Notifications, a_server_that_does_not_answer_gets_the_notification_all_the_same) {
    const auto server = serve({"silent-server"});
    const auto program = post();
    server->waitForLine("call GetCapabilities");
    server->waitForLine("call Notify");
}

TEST_F(Notifications, a_server_that_answers_nonsense_gets_the_notification_all_the_same) {
    const auto server = serve({"strange-server"});
    const auto program = post();
    server->waitForLine("call Notify");
    EXPECT_TRUE(program->isRunning());
}

TEST_F(Notifications, a_server_that_answers_after_a_second_is_waited_for) {
    const auto server = serve({"slow-server", "1000", "body"});
    const auto program = post();
    const auto answer = server->waitForLine("answered GetCapabilities");
    server->waitForLine("answered Notify", server->waitForLine("call Notify", answer));
    EXPECT_EQ(server->countOf("call Notify"), 1U);
}

TEST_F(Notifications, a_server_that_answers_after_seven_seconds_gets_the_notification_once) {
    const auto server = serve({"slow-server", "7000", "body"});
    const auto program = post();
    const auto notification = server->waitForLine("call Notify");
    EXPECT_EQ(server->countOf("answered GetCapabilities"), 0U) << "It is not waited for so long.";
    server->waitForLine("answered GetCapabilities", notification);
    server->waitForLine("answered Notify", notification);
    EXPECT_EQ(server->countOf("call Notify"), 1U);
    EXPECT_TRUE(program->isRunning());
}

TEST_F(Notifications, a_server_that_is_killed_costs_its_notifications_and_another_is_asked_anew) {
    auto plain = serve({"slow-server", "0", "body"});
    const auto program = post();
    plain->waitForLine("body " + std::string(body));
    plain->signal(SIGKILL);
    plain.reset();
    program->signal(SIGUSR1);
    program->waitForLine("denied");
    const auto rich = serve({"slow-server", "0", "body", "body-markup"});
    program->signal(SIGUSR1);
    rich->waitForLine("body Saved to &lt;b&gt;Shots&lt;/b&gt; &amp; more");
    EXPECT_EQ(program->countOf("posted"), 2U);
}

TEST_F(Notifications, an_answer_after_the_end_of_the_service_is_nobodys) {
    Desktop& desktop = with(desktop_, NotificationDaemon::recorder);
    const auto program = desktop.start("gone", {LUMAFRAME_BUS_PROBE, "notify-gone"});
    program->waitForLine("gone");
    EXPECT_TRUE(desktop::staysTrue([&] { return program->countOf("answered") == 0; },
                                   std::chrono::milliseconds(300)));
}

TEST(MarkupText, every_special_character_is_escaped_once) {
    EXPECT_EQ(escapedForMarkup("a<b>&amp;\"ž"), "a&lt;b&gt;&amp;amp;\"ž");
}

TEST(RandomIdentifier, is_a_fresh_uuid_of_the_random_kind) {
    const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    for (int round = 0; round < 1000; ++round) {
        const std::string identifier = randomIdentifier();
        EXPECT_TRUE(std::regex_match(identifier, form)) << identifier;
        seen.insert(identifier);
    }
    EXPECT_EQ(seen.size(), 1000U);
}

}  // namespace
