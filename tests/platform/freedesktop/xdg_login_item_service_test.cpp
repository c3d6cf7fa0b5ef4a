#include "platform/freedesktop/xdg_login_item_service.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "platform/freedesktop/autostart_entry.h"
#include "platform/freedesktop/temporary_directory.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using ui::LoginItemStatus;

const std::string userEntry = "config/autostart/app.lumaframe.Lumaframe.desktop";
const std::string systemEntry = "xdg/autostart/app.lumaframe.Lumaframe.desktop";

class XdgLoginItemServiceTest : public testing::Test {
  protected:
    [[nodiscard]] LoginItemStatus status() const { return service_.status(); }
    std::string sentenceOf(const base::Status& changed) {
        return changed ? "(it succeeded)" : changed.error().sentence;
    }

    freedesktop_tests::TemporaryDirectory directory_;
    std::string program_ = "/bin/sh";
    platform::freedesktop::XdgDirectories directories_{
        .home = directory_.path(),
        .configHome = directory_.path("config"),
        .dataHome = "",
        .dataDirectories = {},
        .configDirectories = {directory_.path("nothing"), directory_.path("xdg")}};
    platform::freedesktop::XdgLoginItemService service_{
        directories_, {.currentDesktops = {"XFCE"}, .runningProgram = [this] { return program_; }}};
};

TEST_F(XdgLoginItemServiceTest, the_entry_is_one_file_of_its_own_name) {
    ASSERT_TRUE(service_.registerItem());
    std::vector<std::string> names;
    for (const auto& entry :
         std::filesystem::directory_iterator(directory_.path("config/autostart"))) {
        names.push_back(entry.path().filename());
    }
    EXPECT_THAT(names, ElementsAre("app.lumaframe.Lumaframe.desktop"));
    EXPECT_EQ(directory_.read(userEntry), platform::freedesktop::autostartEntryFor("/bin/sh"));
}

TEST_F(XdgLoginItemServiceTest, the_directories_that_are_missing_are_made_for_the_owner_alone) {
    ASSERT_TRUE(service_.registerItem());
    EXPECT_EQ(directory_.modeOf(directory_.path("config")), 0700U);
    EXPECT_EQ(directory_.modeOf(directory_.path("config/autostart")), 0700U);
}

TEST_F(XdgLoginItemServiceTest, removing_it_leaves_nothing) {
    ASSERT_TRUE(service_.registerItem());
    ASSERT_TRUE(service_.unregisterItem());
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path("config/autostart")));
}

TEST_F(XdgLoginItemServiceTest, reading_the_status_changes_nothing) {
    EXPECT_EQ(status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(std::filesystem::exists(directory_.path("config")));
}

TEST_F(XdgLoginItemServiceTest, an_entry_of_a_program_that_is_gone_is_not_enabled) {
    program_ = directory_.path("lumaframe");
    ASSERT_TRUE(service_.registerItem());
    EXPECT_EQ(status(), LoginItemStatus::notFound);
}

TEST_F(XdgLoginItemServiceTest, an_entry_that_another_program_replaced_is_read_again) {
    ASSERT_TRUE(service_.registerItem());
    directory_.write(userEntry, "garbage\0\xFF");
    EXPECT_EQ(status(), LoginItemStatus::notRegistered);
    ASSERT_TRUE(service_.registerItem());
    EXPECT_EQ(status(), LoginItemStatus::enabled);
    std::filesystem::remove(directory_.path(userEntry));
    EXPECT_EQ(status(), LoginItemStatus::notRegistered);
}

TEST_F(XdgLoginItemServiceTest, an_entry_of_the_system_counts_and_is_hidden_by_one_of_the_user) {
    directory_.write(systemEntry, platform::freedesktop::autostartEntryFor("/bin/sh"));
    EXPECT_EQ(status(), LoginItemStatus::enabled);
    ASSERT_TRUE(service_.unregisterItem());
    EXPECT_EQ(status(), LoginItemStatus::requiresApproval);
    EXPECT_THAT(directory_.read(userEntry), HasSubstr("\nHidden=true\n"));
    ASSERT_TRUE(service_.registerItem());
    EXPECT_EQ(status(), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemServiceTest, an_entry_of_the_system_that_starts_nothing_needs_no_hiding) {
    directory_.write(systemEntry, platform::freedesktop::hidingAutostartEntry());
    ASSERT_TRUE(service_.registerItem());
    ASSERT_TRUE(service_.unregisterItem());
    EXPECT_FALSE(std::filesystem::exists(directory_.path(userEntry)));
    EXPECT_EQ(status(), LoginItemStatus::notRegistered);
}

TEST_F(XdgLoginItemServiceTest, an_autostart_directory_that_is_a_file_is_one_sentence) {
    directory_.write("config/autostart", "not a folder");
    EXPECT_EQ(status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(sentenceOf(service_.registerItem()), "“autostart” is not a folder.");
    EXPECT_TRUE(service_.unregisterItem());
    EXPECT_EQ(directory_.read("config/autostart"), "not a folder");
}

TEST_F(XdgLoginItemServiceTest, an_autostart_directory_that_is_a_dangling_link_is_one_sentence) {
    std::filesystem::create_directory(directory_.path("config"));
    std::filesystem::create_symlink("nowhere", directory_.path("config/autostart"));
    EXPECT_EQ(status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(sentenceOf(service_.registerItem()), "The folder “autostart” doesn’t exist.");
    EXPECT_TRUE(service_.unregisterItem());
}

TEST_F(XdgLoginItemServiceTest, a_folder_in_the_place_of_the_entry_is_one_sentence) {
    std::filesystem::create_directories(directory_.path(userEntry + "/x"));
    EXPECT_EQ(status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(sentenceOf(service_.registerItem()),
              "The file “app.lumaframe.Lumaframe.desktop” couldn’t be saved because a folder has "
              "that name.");
    EXPECT_EQ(sentenceOf(service_.unregisterItem()),
              "The file “app.lumaframe.Lumaframe.desktop” couldn’t be removed: Is a directory.");
}

TEST_F(XdgLoginItemServiceTest, a_dangling_link_in_the_place_of_the_entry_is_replaced) {
    std::filesystem::create_directories(directory_.path("config/autostart"));
    std::filesystem::create_symlink("nowhere", directory_.path(userEntry));
    EXPECT_EQ(status(), LoginItemStatus::notRegistered);
    ASSERT_TRUE(service_.registerItem());
    EXPECT_EQ(status(), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemServiceTest, a_pipe_in_the_place_of_the_entry_holds_nobody_up) {
    std::filesystem::create_directories(directory_.path("config/autostart"));
    ASSERT_EQ(::mkfifo(directory_.path(userEntry).c_str(), 0600), 0);
    EXPECT_EQ(status(), LoginItemStatus::notRegistered);
    ASSERT_TRUE(service_.registerItem());
    EXPECT_EQ(status(), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemServiceTest, without_a_home_directory_there_is_no_place_for_it) {
    directories_.configHome = "";
    platform::freedesktop::XdgLoginItemService service(
        directories_, {.currentDesktops = {}, .runningProgram = [] { return "/bin/sh"; }});
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(sentenceOf(service.registerItem()),
              "There is no home directory to keep a login item in.");
    EXPECT_TRUE(service.unregisterItem());
}

TEST_F(XdgLoginItemServiceTest, a_path_that_is_no_text_is_refused) {
    program_ = "/opt/\xFF/lumaframe";
    EXPECT_EQ(sentenceOf(service_.registerItem()),
              "The program is in a folder whose name isn’t text.");
    EXPECT_FALSE(std::filesystem::exists(directory_.path(userEntry)));
}

TEST(CurrentDesktopNames, are_the_parts_of_the_variable) {
    const freedesktop_tests::ScopedVariable desktop("XDG_CURRENT_DESKTOP", "ubuntu::GNOME");
    EXPECT_THAT(platform::freedesktop::currentDesktopNames(), ElementsAre("ubuntu", "GNOME"));
}

}  // namespace
