#include "app/menu_bar_commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <memory>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

class MenuBarCommandsTest : public testing::Test {
  protected:
    std::unique_ptr<app::MenuBarCommands> make() {
        return std::make_unique<app::MenuBarCommands>(
            notifications, app::MenuBarCommands::Actions{
                               .showMainWindow = [this] { done.emplace_back("show"); },
                               .openPermissionsScene = [this] { done.emplace_back("permissions"); },
                               .terminate = [this] { done.emplace_back("quit"); }});
    }

    app::NotificationCenter notifications;
    std::vector<std::string> done;
};

TEST_F(MenuBarCommandsTest, the_keys_are_shown_beside_their_items) {
    const auto commands = make();
    const auto items = commands->menu().actions();
    ASSERT_EQ(items.size(), 5);
    EXPECT_TRUE(items[0]->shortcut().isEmpty());
    EXPECT_EQ(items[2]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Comma));
    EXPECT_EQ(items[4]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    EXPECT_EQ(commands->settingsCommand().shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Comma));
    EXPECT_EQ(commands->settingsCommand().text(), "Settings...");
    EXPECT_EQ(&commands->quitCommand(), items[4]);
}

TEST_F(MenuBarCommandsTest, the_item_opens_the_window_directly_and_posts_nothing) {
    int posted = 0;
    const auto observation = notifications.observe("OpenPermissionsWindow", [&] { ++posted; });
    const auto commands = make();
    commands->menu().actions().at(2)->trigger();
    EXPECT_THAT(done, ElementsAre("permissions"));
    EXPECT_EQ(posted, 0);
}

TEST_F(MenuBarCommandsTest, every_delivery_of_the_notification_opens_the_window) {
    const auto commands = make();
    notifications.post("OpenPermissionsWindow");
    notifications.post("ClosePermissionsWindow");
    notifications.post("OpenPermissionsWindow");
    EXPECT_THAT(done, ElementsAre("permissions", "permissions"));
}

TEST_F(MenuBarCommandsTest, a_menu_that_is_gone_opens_nothing) {
    make().reset();
    notifications.post("OpenPermissionsWindow");
    EXPECT_THAT(done, ElementsAre());
}

TEST_F(MenuBarCommandsTest, the_first_and_the_last_item_show_and_quit) {
    const auto commands = make();
    commands->menu().actions().at(0)->trigger();
    commands->menu().actions().at(4)->trigger();
    EXPECT_THAT(done, ElementsAre("show", "quit"));
}

}  // namespace
