// The watch that every journey keeps over the disk: that it sees what it is for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "journeys/left_on_disk.h"

namespace journeys {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// Any program in the place of the real one.
class LeftBehind : public testing::Test {
  protected:
    void run(const std::string& script) {
        watch.begin();
        auto program = desktop.start("program", {"sh", "-c", "set -e; cd; " + script},
                                     watch.environment(), watch.entrance());
        EXPECT_EQ(program->waitForExit(), 0) << testing::PrintToString(program->errorLines());
    }

    desktop::Desktop desktop{{.windowManager = desktop::WindowManager::none}};
    LeftOnDisk watch{desktop};
};

TEST_F(LeftBehind, pictures_texts_settings_and_the_autostart_entry_are_no_strangers) {
    run("cd Downloads; touch 'Screenshot 2025-03-07 at 14.05.09.png' 'Boats leave.txt'");
    run("mkdir .config/lumaframe; cd .config/lumaframe; touch .lumaframe-1-2;"
        "mv .lumaframe-1-2 settings.json; cp settings.json settings.json.corrupt-2025");
    run("mkdir .config/autostart; touch .config/autostart/app.lumaframe.Lumaframe.desktop");
    EXPECT_THAT(watch.strangers(Ending::ordinary), IsEmpty());
}

TEST_F(LeftBehind, a_picture_in_a_hidden_folder_is_a_stranger) {
    run("touch '.cache/Screenshot 2025-03-07 at 14.05.09.png' .local/share/a.txt");
    EXPECT_THAT(watch.strangers(Ending::ordinary),
                ElementsAre("home/.cache/Screenshot 2025-03-07 at 14.05.09.png",
                            "home/.local/share/a.txt"));
}

TEST_F(LeftBehind, a_file_that_was_there_for_a_moment_is_a_stranger) {
    run("touch Downloads/last.png \"$XDG_RUNTIME_DIR/snapshot\";"
        "rm Downloads/last.png \"$XDG_RUNTIME_DIR/snapshot\"");
    EXPECT_THAT(watch.strangers(Ending::ordinary),
                ElementsAre("home/Downloads/last.png", "runtime/snapshot"));
}

TEST_F(LeftBehind, a_file_for_temporary_things_is_a_stranger) {
    run("touch \"${TMPDIR:-/tmp}/a\"");
    EXPECT_THAT(watch.strangers(Ending::ordinary), ElementsAre("tmp/a"));
}

TEST_F(LeftBehind, a_draft_is_a_stranger_when_it_stays_unless_the_program_was_killed) {
    run("touch Downloads/.lumaframe-1-2");
    EXPECT_THAT(watch.strangers(Ending::killed), IsEmpty());
    EXPECT_THAT(watch.strangers(Ending::ordinary), ElementsAre("home/Downloads/.lumaframe-1-2"));
}

TEST_F(LeftBehind, an_earlier_program_is_not_forgotten) {
    run("touch stranger");
    run("true");
    EXPECT_THAT(watch.strangers(Ending::ordinary), Contains("home/stranger"));
}

TEST_F(LeftBehind, what_the_test_has_made_is_no_stranger) {
    watch.expect(desktop.home() / "mine");
    run("mkdir mine; touch mine/file");
    EXPECT_THAT(watch.strangers(Ending::ordinary), ElementsAre("home/mine/file"));
}

}  // namespace
}  // namespace journeys
