#include "platform/freedesktop/sound_theme.h"

#include <gtest/gtest.h>

#include "platform/freedesktop/temporary_directory.h"

namespace {

using freedesktop_tests::TemporaryDirectory;
using platform::freedesktop::findSound;
using platform::freedesktop::XdgDirectories;

class SoundTheme : public testing::Test {
  protected:
    std::optional<std::string> find(const std::string& name) {
        return findSound({.home = "",
                          .configHome = "",
                          .dataHome = directory_.path("home"),
                          .dataDirectories = {directory_.path("system")}},
                         name);
    }
    TemporaryDirectory directory_;
};

TEST_F(SoundTheme, a_name_that_no_theme_has_is_not_found) {
    EXPECT_EQ(find("Hero"), std::nullopt);
}

TEST_F(SoundTheme, the_theme_of_the_desktop_is_searched) {
    const auto path = directory_.write("system/sounds/freedesktop/stereo/Hero.oga", "");
    EXPECT_EQ(find("Hero"), path);
    EXPECT_EQ(find("hero"), std::nullopt);
}

TEST_F(SoundTheme, the_users_own_sound_wins) {
    directory_.write("system/sounds/freedesktop/stereo/Hero.oga", "");
    const auto path = directory_.write("home/sounds/freedesktop/stereo/Hero.wav", "");
    EXPECT_EQ(find("Hero"), path);
}

TEST_F(SoundTheme, directories_for_more_speakers_are_left_out) {
    directory_.write("system/sounds/freedesktop/index.theme",
                     "[Sound Theme]\nDirectories=5.1,two\n[5.1]\nOutputProfile=5.1\n[two]\n"
                     "OutputProfile=stereo\n");
    directory_.write("system/sounds/freedesktop/5.1/Hero.oga", "");
    EXPECT_EQ(find("Hero"), std::nullopt);
    const auto path = directory_.write("system/sounds/freedesktop/two/Hero.ogg", "");
    EXPECT_EQ(find("Hero"), path);
}

TEST_F(SoundTheme, inherited_themes_are_searched_in_their_order_and_loops_end) {
    directory_.write("system/sounds/freedesktop/index.theme",
                     "[Sound Theme]\nInherits=a,b\nDirectories=stereo\n");
    directory_.write("system/sounds/a/index.theme", "[Sound Theme]\nInherits=freedesktop,a\n");
    const auto inB = directory_.write("system/sounds/b/stereo/Hero.oga", "");
    EXPECT_EQ(find("Hero"), inB);
    const auto inA = directory_.write("system/sounds/a/stereo/Hero.oga", "");
    EXPECT_EQ(find("Hero"), inA);
}

TEST_F(SoundTheme, sounds_of_no_theme_come_last) {
    const auto path = directory_.write("system/sounds/Hero.wav", "");
    EXPECT_EQ(find("Hero"), path);
}

TEST_F(SoundTheme, nothing_outside_the_sound_directories_is_found) {
    directory_.write("secret/Hero.wav", "");
    directory_.write("system/sounds/freedesktop/stereo/here.wav", "");
    directory_.write("system/sounds/freedesktop/index.theme",
                     "[Sound Theme]\nInherits=../../secret\nDirectories=../../../secret,/,..\n");
    EXPECT_EQ(find("Hero"), std::nullopt);
    EXPECT_EQ(find("../../../secret/Hero"), std::nullopt);
    EXPECT_EQ(find("../freedesktop/stereo/here"), std::nullopt);
    EXPECT_EQ(find(""), std::nullopt);
}

TEST_F(SoundTheme, a_folder_is_no_sound) {
    std::filesystem::create_directories(directory_.path("home/sounds/Hero.wav"));
    EXPECT_EQ(find("Hero"), std::nullopt);
}

}  // namespace
