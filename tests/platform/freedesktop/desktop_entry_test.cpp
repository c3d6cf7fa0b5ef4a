#include "platform/freedesktop/desktop_entry.h"

#include <gmock/gmock.h>

#include <random>

namespace {

using platform::freedesktop::DesktopEntry;
using platform::freedesktop::nameKeysOf;
using platform::freedesktop::parseDesktopEntry;
using testing::ElementsAre;

constexpr const char* editor =
    "[Desktop Entry]\nType=Application\nName=Editor\nName[de]=Bearbeiter\n"
    "Name[pt_BR]=Editor do Brasil\nName[sr@latin]=Uredjivac\nStartupWMClass=Edit\n"
    "Exec=/usr/bin/edit --new %U\n[Desktop Action new]\nName=New window\n";

std::string nameIn(const std::string& text, const char* locale) {
    const auto entry = parseDesktopEntry(text, nameKeysOf(locale));
    return entry ? entry->name : std::string("(no entry)");
}

TEST(DesktopEntry, name_class_and_program_are_read_from_the_main_group) {
    const auto entry = parseDesktopEntry(editor, {"Name"});
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->name, "Editor");
    EXPECT_EQ(entry->startupWindowClass, "Edit");
    EXPECT_EQ(entry->executable, "edit");
    EXPECT_EQ(entry->visibility, DesktopEntry::Visibility::present);
}

TEST(DesktopEntry, the_name_keys_of_a_locale_go_from_the_closest_to_the_plain_one) {
    EXPECT_THAT(nameKeysOf("sr_RS.UTF-8@latin"), ElementsAre("Name[sr_RS@latin]", "Name[sr_RS]",
                                                             "Name[sr@latin]", "Name[sr]", "Name"));
    EXPECT_THAT(nameKeysOf("de_DE.UTF-8"), ElementsAre("Name[de_DE]", "Name[de]", "Name"));
    EXPECT_THAT(nameKeysOf("de"), ElementsAre("Name[de]", "Name"));
}

TEST(DesktopEntry, a_locale_without_a_language_takes_the_plain_name) {
    for (const char* locale : {"", "C", "POSIX", "C.UTF-8"}) {
        EXPECT_THAT(nameKeysOf(locale), ElementsAre("Name")) << locale;
    }
}

TEST(DesktopEntry, the_name_is_in_the_language_of_the_locale) {
    EXPECT_EQ(nameIn(editor, "de_AT.UTF-8"), "Bearbeiter");
    EXPECT_EQ(nameIn(editor, "pt_BR.UTF-8"), "Editor do Brasil");
    EXPECT_EQ(nameIn(editor, "pt_PT.UTF-8"), "Editor");
    EXPECT_EQ(nameIn(editor, "sr_RS@latin"), "Uredjivac");
    EXPECT_EQ(nameIn(editor, "sr_RS"), "Editor");
}

TEST(DesktopEntry, an_empty_translation_falls_back) {
    EXPECT_EQ(nameIn("[Desktop Entry]\nType=Application\nName=A\nName[de]=\n", "de"), "A");
}

TEST(DesktopEntry, only_applications_with_a_name_count) {
    EXPECT_EQ(nameIn("[Desktop Entry]\nType=Link\nName=A\n", ""), "(no entry)");
    EXPECT_EQ(nameIn("[Desktop Entry]\nType=Application\n", ""), "(no entry)");
    EXPECT_EQ(nameIn("[Other]\nType=Application\nName=A\n", ""), "(no entry)");
    EXPECT_EQ(nameIn("", ""), "(no entry)");
}

TEST(DesktopEntry, a_hidden_file_says_that_the_application_was_deleted) {
    const auto entry = parseDesktopEntry("[Desktop Entry]\nHidden=true\n", {"Name"});
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->visibility, DesktopEntry::Visibility::deleted);
}

TEST(DesktopEntry, a_name_is_one_line_whatever_the_file_says) {
    EXPECT_EQ(nameIn("[Desktop Entry]\nType=Application\nName=A\\nB\\tC\\\\D\x07"
                     "E\n",
                     ""),
              "A B C\\D E");
}

TEST(DesktopEntry, the_program_is_the_first_word_without_its_directory_unless_it_is_a_helper) {
    const auto program = [](const std::string& command) {
        return parseDesktopEntry(
                   "[Desktop Entry]\nType=Application\nName=A\nExec=" + command + "\n", {"Name"})
            ->executable;
    };
    EXPECT_EQ(program("gimp-2.10 %U"), "gimp-2.10");
    EXPECT_EQ(program("\"/opt/My Program/run\" --x"), "run");
    EXPECT_EQ(program("env X=1 gimp"), "");
    EXPECT_EQ(program("/usr/bin/flatpak run org.example.App"), "");
    EXPECT_EQ(program(""), "");
    EXPECT_EQ(program("\"unclosed"), "unclosed");
}

TEST(DesktopEntry, no_text_is_too_strange_to_read) {
    std::mt19937 random(11);
    const std::string alphabet("[]=\n\"\\ /aNExec\x01\xff", 17);
    for (int round = 0; round < 2000; ++round) {
        std::string text = "[Desktop Entry]\nType=Application\nName=A\nExec=";
        for (auto count = random() % 40; count > 0; --count) {
            text.push_back(alphabet[random() % alphabet.size()]);
        }
        EXPECT_NO_THROW(parseDesktopEntry(text, nameKeysOf("de_DE@x")));
    }
}

}  // namespace
