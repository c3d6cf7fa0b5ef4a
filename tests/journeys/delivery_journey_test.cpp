// Where pictures go, and that one failing step never keeps the others back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <fstream>

#include "journeys/private_mounts.h"
#include "journeys/session.h"

namespace journeys {
namespace {

using desktop::NotificationDaemon;
using testing::ElementsAre;
using testing::IsEmpty;

class Delivery : public testing::Test {
  protected:
    void startWith(nlohmann::json settings, std::function<void()> beforeExec = {}) {
        session.writeSettings(std::move(settings));
        session.start(SettingsWindow::closed, {}, std::move(beforeExec));
    }
    /// Takes the same region each time; returns the place in the log before it.
    std::size_t capture() {
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().drag(from, {from.x + 300, from.y + 200});
        session.waitUntilClosed();
        return before;
    }
    void expectOnClipboard() {
        ASSERT_TRUE(desktop::waitUntil([&] { return session.clipboard().isOwned(); }));
        EXPECT_EQ(desktop::difference(session.wallpaper().cut(from.x, from.y, 300, 200),
                                      session.clipboardPicture().picture),
                  "equal");
    }
    void expectNotification(const std::string& body) {
        EXPECT_TRUE(desktop::waitUntil([&] { return !session.desktop().notifications().empty(); }));
        const auto received = session.desktop().notifications();
        ASSERT_EQ(received.size(), 1U);
        EXPECT_EQ(received[0].title, "Screenshot Captured");
        EXPECT_EQ(received[0].body, body);
    }
    /// The save fails with one line; clipboard and notification happen all the same.
    void expectFailedSave(const std::string& folder, const std::function<void()>& beforeExec = {}) {
        startWith({{"screenshotSavePath", folder}, {"showNotifications", true}}, beforeExec);
        const std::size_t before = capture();
        const std::string sentence = session.waitForLine(line::notSaved, before);
        EXPECT_FALSE(sentence.empty());
        expectOnClipboard();
        expectNotification("Saved to " + std::filesystem::path(folder).filename().string());
        EXPECT_EQ(session.countSince(before, line::saved), 0U);
        EXPECT_EQ(session.countSince(before, line::notSaved), 1U);
        EXPECT_EQ(session.countSince(before, line::regionCopied), 1U);
        EXPECT_THAT(session.downloads(), IsEmpty());
        EXPECT_TRUE(session.program().isRunning());
    }

    Session session{{.notifications = NotificationDaemon::recorder}};
    const Place from{200, 150};
};

TEST_F(Delivery, with_both_targets_off_there_is_still_the_notification) {
    startWith(
        {{"copyToClipboard", false}, {"saveToDownloads", false}, {"showNotifications", true}});
    const std::size_t before = capture();
    expectNotification("Saved to Downloads");
    EXPECT_THAT(session.downloads(), IsEmpty());
    EXPECT_FALSE(session.clipboard().isOwned());
    EXPECT_EQ(session.countSince(before, line::regionCopied), 0U);
    EXPECT_EQ(session.countSince(before, line::saved), 0U);
}

TEST_F(Delivery, without_the_setting_there_is_no_notification) {
    startWith(nlohmann::json::object());
    const std::size_t before = capture();
    session.waitForLine(line::saved, before);
    EXPECT_TRUE(desktop::staysTrue([&] { return session.desktop().notifications().empty(); },
                                   std::chrono::milliseconds(200)));
}

TEST_F(Delivery, a_folder_with_spaces_and_letters_of_other_languages_is_taken_as_it_stands) {
    const auto folder = session.desktop().home() / "Meine Bilder – 写真" / "Fünf  ёлок";
    std::filesystem::create_directories(folder);
    startWith({{"screenshotSavePath", folder.string()}, {"showNotifications", true}});
    const std::size_t before = capture();
    const std::filesystem::path file = session.waitForLine(line::saved, before);
    EXPECT_EQ(file.parent_path(), folder);
    EXPECT_EQ(desktop::difference(session.wallpaper().cut(from.x, from.y, 300, 200),
                                  desktop::decodePng(desktop::readFile(file)).picture),
              "equal");
    expectNotification("Saved to Fünf  ёлок");
    EXPECT_THAT(session.downloads(), IsEmpty());
}

TEST_F(Delivery, a_notification_shows_markup_letters_as_they_are) {
    const auto folder = session.desktop().home() / "<b>R&D</b>";
    std::filesystem::create_directories(folder);
    startWith({{"screenshotSavePath", folder.string() + "/"}, {"showNotifications", true}});
    const std::size_t before = capture();
    session.waitForLine(line::saved, before);
    // The recorder says that it reads markup, so the text has to come escaped. The last component
    // of the path is the one behind its last inner slash.
    expectNotification("Saved to b&gt;");
}

TEST_F(Delivery, settings_are_read_at_each_capture) {
    startWith(nlohmann::json::object());
    const auto first = session.waitForLine(line::saved, capture());
    auto settings = session.readSettings();
    settings["saveToDownloads"] = false;
    session.writeSettings(settings);
    // The file is watched, not polled: the change arrives a moment later.
    session.require("The new setting to hold", [&] {
        const std::size_t before = capture();
        session.waitForLine(line::regionCopied, before);
        return desktop::staysTrue([&] { return session.countSince(before, line::saved) == 0; },
                                  std::chrono::milliseconds(150));
    });
}

TEST_F(Delivery, a_folder_that_does_not_exist_is_one_line) {
    expectFailedSave(session.desktop().home() / "not here");
    EXPECT_FALSE(std::filesystem::exists(session.desktop().home() / "not here"));
}

TEST_F(Delivery, a_path_that_is_a_file_is_one_line) {
    const auto file = session.desktop().home() / "a file";
    std::ofstream(file) << "contents";
    expectFailedSave(file);
    EXPECT_EQ(std::filesystem::file_size(file), 8U);
}

TEST_F(Delivery, a_read_only_folder_is_one_line) {
    if (!canMount()) {
        GTEST_SKIP() << "Needs the right to mount a read-only file system.";
    }
    const auto folder = session.desktop().home() / "read-only";
    std::filesystem::create_directories(folder);
    expectFailedSave(folder, mountedOver(folder, MS_RDONLY, ""));
}

TEST_F(Delivery, a_full_disk_is_one_line) {
    if (!canMount()) {
        GTEST_SKIP() << "Needs the right to mount a small file system.";
    }
    const auto folder = session.desktop().home() / "full";
    std::filesystem::create_directories(folder);
    // Smaller than the noise of the wallpaper can be packed.
    expectFailedSave(folder, mountedOver(folder, 0, "size=65536"));
}

TEST_F(Delivery, without_a_downloads_folder_saving_fails_in_one_line) {
    startWith({{"showNotifications", true}});
    // After the start, where the permissions window would ask for it.
    std::filesystem::remove(session.desktop().home() / "Downloads");
    const std::size_t before = capture();
    session.waitForLine(line::notSaved, before);
    expectOnClipboard();
    expectNotification("Saved to Downloads");
    EXPECT_FALSE(std::filesystem::exists(session.desktop().home() / "Downloads"));
}

TEST_F(Delivery, the_folder_that_the_person_s_desktop_calls_downloads_is_used) {
    const auto folder = session.desktop().home() / "Heruntergeladen";
    std::filesystem::create_directories(folder);
    std::ofstream(session.desktop().home() / ".config/user-dirs.dirs")
        << "XDG_DOWNLOAD_DIR=\"$HOME/Heruntergeladen\"\n";
    startWith(nlohmann::json::object());
    const std::filesystem::path file = session.waitForLine(line::saved, capture());
    EXPECT_EQ(file.parent_path(), folder);
}

}  // namespace
}  // namespace journeys
