#include "platform/freedesktop/autostart_entry.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/freedesktop/temporary_directory.h"

namespace {

using platform::freedesktop::autostartEntryFor;
using platform::freedesktop::AutostartState;
using platform::freedesktop::hidingAutostartEntry;
using platform::freedesktop::stateOfAutostartEntry;

const std::string start = "[Desktop Entry]\nType=Application\nName=L\nExec=/bin/sh\n";

AutostartState stateOf(const std::string& text, const std::vector<std::string>& desktops = {}) {
    return stateOfAutostartEntry(text, desktops);
}

TEST(AutostartEntry, the_one_that_is_written_starts_the_program) {
    EXPECT_EQ(stateOf(autostartEntryFor("/bin/sh")), AutostartState::started);
    EXPECT_EQ(stateOf(autostartEntryFor("/bin/sh"), {"XFCE"}), AutostartState::started);
}

TEST(AutostartEntry, it_neither_opens_a_terminal_nor_makes_the_pointer_busy) {
    const std::string text = autostartEntryFor("/bin/sh");
    EXPECT_NE(text.find("\nTerminal=false\n"), std::string::npos);
    EXPECT_NE(text.find("\nStartupNotify=false\n"), std::string::npos);
    EXPECT_EQ(text.find("DBusActivatable"), std::string::npos);
}

TEST(AutostartEntry, the_hiding_one_starts_nothing) {
    EXPECT_EQ(stateOf(hidingAutostartEntry()), AutostartState::switchedOff);
}

TEST(AutostartEntry, the_switches_of_the_desktops_turn_it_off) {
    for (const char* line : {"Hidden=true", "Hidden = true", "Hidden=1",
                             "X-GNOME-Autostart-enabled=false", "X-MATE-Autostart-enabled=false"}) {
        EXPECT_EQ(stateOf(start + line + "\n"), AutostartState::switchedOff) << line;
    }
    for (const char* line : {"Hidden=false", "X-GNOME-Autostart-enabled=true", "#Hidden=true",
                             "Hidden[de]=true", "[Other]\nHidden=true"}) {
        EXPECT_EQ(stateOf(start + line + "\n"), AutostartState::started) << line;
    }
}

TEST(AutostartEntry, one_for_other_desktops_is_off_on_this_one) {
    const std::string text = start + "OnlyShowIn=GNOME;KDE;\n";
    EXPECT_EQ(stateOf(text, {"XFCE"}), AutostartState::switchedOff);
    EXPECT_EQ(stateOf(text, {}), AutostartState::switchedOff);
    EXPECT_EQ(stateOf(text, {"KDE"}), AutostartState::started);
    EXPECT_EQ(stateOf(text, {"ubuntu", "GNOME"}), AutostartState::started);
}

TEST(AutostartEntry, one_that_leaves_this_desktop_out_is_off) {
    const std::string text = start + "NotShowIn=GNOME;\n";
    EXPECT_EQ(stateOf(text, {"GNOME"}), AutostartState::switchedOff);
    EXPECT_EQ(stateOf(text, {"KDE"}), AutostartState::started);
    EXPECT_EQ(stateOf(text), AutostartState::started);
}

TEST(AutostartEntry, one_whose_program_is_gone_starts_nothing) {
    EXPECT_EQ(stateOf(autostartEntryFor("/nowhere/lumaframe")), AutostartState::programMissing);
    EXPECT_EQ(stateOf("[Desktop Entry]\nType=Application\nExec=no-such-program-here\n"),
              AutostartState::programMissing);
    EXPECT_EQ(stateOf(start + "TryExec=/nowhere/lumaframe\n"), AutostartState::programMissing);
}

TEST(AutostartEntry, a_program_may_be_found_by_its_name) {
    EXPECT_EQ(stateOf("[Desktop Entry]\nType=Application\nExec=sh -c true\n"),
              AutostartState::started);
    const freedesktop_tests::ScopedVariable path("PATH", "/nowhere:");
    EXPECT_EQ(stateOf("[Desktop Entry]\nType=Application\nExec=sh\n"),
              AutostartState::programMissing);
}

TEST(AutostartEntry, garbage_is_broken) {
    for (const std::string text :
         {"", "\n", "Type=Application\nExec=/bin/sh\n", "[Desktop Entry]\n",
          "[Desktop Entry]\nType=Link\nExec=/bin/sh\n", "[Desktop Entry]\nType=Application\n",
          "[Desktop Entry]\nType=Application\nExec=\n",
          "[Desktop Entry]\nType=Application\nExec=\"\n",
          "[Desktop Entry\nType=Application\nExec=/bin/sh\n"}) {
        EXPECT_EQ(stateOf(text), AutostartState::broken) << text;
    }
}

TEST(AutostartEntry, no_bytes_crash_the_reader) {
    std::mt19937 random(1);
    const std::string entry = autostartEntryFor("/bin/sh");
    for (int round = 0; round < 2000; ++round) {
        std::string text = entry;
        for (int change = 0; change < 4; ++change) {
            text[random() % text.size()] = static_cast<char>(random());
        }
        stateOf(text.substr(random() % text.size()), {"GNOME"});
    }
}

}  // namespace
