#include "ui/content_view.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QFileDialog>
#include <QPointer>
#include <QPushButton>

#include "ui/check_box.h"
#include "ui/content_view_fixture.h"
#include "ui/folder_button.h"

namespace {

using app::keys::captureShadows;
using app::keys::copyOCRToClipboard;
using app::keys::copyToClipboard;
using app::keys::hideDockIcon;
using app::keys::ocrSavePath;
using app::keys::playSounds;
using app::keys::saveOCRToDownloads;
using app::keys::saveToDownloads;
using app::keys::screenshotSavePath;
using app::keys::showNotifications;
using qt_tests::runUntil;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class ContentView : public ui_tests::ContentViewFixture {
  protected:
    QString accessibleName(QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
    }
};

struct Switch {
    const char* key;
    const char* label;
    bool isOnAtFirst;
};
constexpr Switch switches[] = {
    {saveToDownloads, "Save to", true},
    {copyToClipboard, "Copy to clipboard", true},
    {saveOCRToDownloads, "Save to", false},
    {copyOCRToClipboard, "Copy to clipboard", true},
    {hideDockIcon, "Hide dock icon", false},
    {showNotifications, "Show notifications", false},
    {captureShadows, "Capture window shadows by Spacebar", true},
    {playSounds, "Play sounds", true},
};

TEST_F(ContentView, it_says_what_it_is_and_names_its_two_columns) {
    EXPECT_THAT(
        labelTexts(),
        ElementsAre(QStringLiteral("Lumaframe"),
                    QStringLiteral("Advanced screenshot capture and instant text recognition."),
                    QStringLiteral("Screenshots"), QStringLiteral("Text Recognition")));
}

TEST_F(ContentView, on_a_fresh_store_each_switch_shows_its_effective_default_and_writes_nothing) {
    for (const Switch& expected : switches) {
        EXPECT_EQ(button(expected.key).text(), QLatin1String(expected.label));
        EXPECT_EQ(button(expected.key).isChecked(), expected.isOnAtFirst) << expected.key;
    }
    EXPECT_THAT(world_.backend.writes, IsEmpty());
}

TEST_F(ContentView, each_switch_stores_its_setting_at_once) {
    for (const Switch& expected : switches) {
        world_.backend.writes.clear();
        button(expected.key).click();
        button(expected.key).click();
        const std::string key = expected.key;
        const std::string first = expected.isOnAtFirst ? "false" : "true";
        const std::string second = expected.isOnAtFirst ? "true" : "false";
        EXPECT_THAT(world_.backend.writes, ElementsAre(key + " = " + first, key + " = " + second));
    }
}

TEST_F(ContentView, a_change_by_another_program_shows_at_once_and_is_not_written_back) {
    view();
    for (const Switch& expected : switches) {
        store(expected.key, !expected.isOnAtFirst);
        EXPECT_EQ(button(expected.key).isChecked(), !expected.isOnAtFirst) << expected.key;
    }
    store(screenshotSavePath, "/home/someone/Shots");
    EXPECT_EQ(accessibleName(button(screenshotSavePath)), QStringLiteral("Shots"));
    EXPECT_THAT(world_.backend.writes, IsEmpty());
}

TEST_F(ContentView, a_value_of_another_type_shows_the_default) {
    view();
    store(playSounds, false);
    store(playSounds, "loud");
    EXPECT_TRUE(button(playSounds).isChecked());
    store(ocrSavePath, "/somewhere");
    store(ocrSavePath, std::int64_t{4});
    EXPECT_EQ(accessibleName(button(ocrSavePath)), QStringLiteral("Downloads"));
    world_.backend.changeFromOutside(saveToDownloads, std::nullopt);
    EXPECT_TRUE(button(saveToDownloads).isChecked());
}

TEST_F(ContentView, ten_thousand_toggles_end_where_they_should) {
    QAbstractButton& sounds = button(playSounds);
    for (int count = 0; count < 10001; ++count) {
        sounds.toggle();
    }
    EXPECT_FALSE(sounds.isChecked());
    EXPECT_EQ(world_.backend.writes.size(), 10001U);
    EXPECT_EQ(world_.backend.writes.back(), "playSounds = false");
}

TEST_F(ContentView, hide_dock_icon_switches_the_activation_policy_at_once) {
    button(hideDockIcon).click();
    EXPECT_EQ(world_.windows.activationPolicy, app::ActivationPolicy::accessory);
    button(hideDockIcon).click();
    EXPECT_EQ(world_.windows.activationPolicy, app::ActivationPolicy::regular);
    store(hideDockIcon, true);
    EXPECT_THAT(world_.calls.calls(), ElementsAre("activation policy: 1", "activation policy: 0",
                                                  "activation policy: 1"));
}

TEST_F(ContentView, run_at_startup_shows_the_systems_answer_of_the_moment_it_was_made) {
    world_.loginItems.current = ui::LoginItemStatus::enabled;
    EXPECT_TRUE(button("runAtStartup").isChecked());
    world_.loginItems.current = ui::LoginItemStatus::requiresApproval;
    EXPECT_TRUE(button("runAtStartup").isChecked());
    close();
    EXPECT_FALSE(button("runAtStartup").isChecked());
    EXPECT_THAT(world_.calls.calls(), IsEmpty());
}

TEST_F(ContentView, run_at_startup_registers_and_unregisters_and_is_no_stored_setting) {
    button("runAtStartup").click();
    button("runAtStartup").click();
    EXPECT_THAT(world_.calls.calls(), ElementsAre("login item register", "login item unregister"));
    EXPECT_THAT(world_.backend.writes, IsEmpty());
}

TEST_F(ContentView, a_login_item_that_fails_goes_back_without_a_second_call) {
    world_.loginItems.error = base::Error{base::ErrorKind::notPermitted, "It is locked."};
    button("runAtStartup").click();
    EXPECT_FALSE(button("runAtStartup").isChecked());
    EXPECT_THAT(
        world_.calls.calls(),
        ElementsAre("login item register", "log: Failed to register login item: It is locked."));
}

TEST_F(ContentView, the_permissions_are_checked_each_time_it_is_shown) {
    view().show();
    world_.queue.runAll();
    EXPECT_THAT(world_.calls.calls(), Not(Contains("open scene: permissions")));
    EXPECT_EQ(world_.calls.count("can capture screen"), 1);
    view().hide();
    world_.permissions.accessibilityIsTrusted = false;
    view().show();
    world_.queue.runAll();
    EXPECT_EQ(world_.calls.count("open scene: permissions"), 1);
    EXPECT_EQ(world_.calls.count("can capture screen"), 2);
}

TEST_F(ContentView, a_view_that_is_gone_checks_no_permissions) {
    world_.permissions.screenIsAllowed = false;
    view().show();
    close();
    world_.queue.runAll();
    EXPECT_THAT(world_.calls.calls(), IsEmpty());
}

TEST_F(ContentView, a_folder_button_says_downloads_or_the_folders_name) {
    EXPECT_EQ(accessibleName(button(screenshotSavePath)), QStringLiteral("Downloads"));
    EXPECT_EQ(accessibleName(button(ocrSavePath)), QStringLiteral("Downloads"));
    world_.settings.setString(screenshotSavePath, "/data/Rock & Roll");
    world_.settings.setString(ocrSavePath, "");
    EXPECT_EQ(accessibleName(button(screenshotSavePath)), QStringLiteral("Rock & Roll"));
    EXPECT_EQ(accessibleName(button(ocrSavePath)), QStringLiteral("Downloads"));
}

TEST_F(ContentView, a_long_folder_name_changes_no_size) {
    const QSize before = frame(view()).size();
    const QSize card = button(screenshotSavePath).parentWidget()->size();
    world_.settings.setString(screenshotSavePath, "/data/" + std::string(300, 'W'));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(frame(view()).size(), before);
    EXPECT_EQ(button(screenshotSavePath).parentWidget()->size(), card);
    const QWidget& column = *button(screenshotSavePath).parentWidget();
    EXPECT_LE(button(screenshotSavePath).geometry().right(), column.rect().right());
}

class FolderDialog : public ContentView {
  protected:
    QFileDialog& open(const char* key) {
        shown();
        button(key).click();
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) {
            throw std::runtime_error("no folder dialog is open");
        }
        return *dialog;
    }
    void accept(QFileDialog& dialog, const QString& folder) {
        dialog.setDirectory(folder);
        dialog.selectFile(folder);
        QMetaObject::invokeMethod(&dialog, "accept");
        QCoreApplication::sendPostedEvents();
    }
    std::string makeFolder(const std::string& name) {
        const auto folder = qt_tests::QtSession::shared().desktop().home() / name;
        std::filesystem::create_directories(folder);
        return folder;
    }
};

TEST_F(FolderDialog, it_is_modal_to_the_window_and_takes_one_existing_or_new_directory) {
    const QFileDialog& dialog = open(screenshotSavePath);
    EXPECT_EQ(dialog.windowModality(), Qt::WindowModal);
    EXPECT_EQ(dialog.fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(dialog.testOption(QFileDialog::ShowDirsOnly));
    EXPECT_FALSE(dialog.testOption(QFileDialog::ReadOnly)) << "directories may be created";
    EXPECT_EQ(dialog.labelText(QFileDialog::Accept), QStringLiteral("Select"));
    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
}

TEST_F(FolderDialog, the_chosen_folder_is_stored_as_a_plain_path_under_the_key_of_its_column) {
    const std::string shots = makeFolder("Mine & Yours ä%20");
    accept(open(screenshotSavePath), QString::fromStdString(shots));
    EXPECT_THAT(world_.backend.writes, ElementsAre("screenshotSavePath = \"" + shots + "\""));
    EXPECT_EQ(accessibleName(button(screenshotSavePath)), QStringLiteral("Mine & Yours ä%20"));
    world_.backend.writes.clear();
    accept(open(ocrSavePath), QString::fromStdString(shots));
    EXPECT_THAT(world_.backend.writes, ElementsAre("ocrSavePath = \"" + shots + "\""));
}

TEST_F(FolderDialog, cancelling_changes_nothing_and_the_dialog_is_gone) {
    QPointer<QFileDialog> dialog = &open(screenshotSavePath);
    dialog->reject();
    EXPECT_TRUE(runUntil([&] { return dialog.isNull(); }));
    EXPECT_THAT(world_.backend.writes, IsEmpty());
}

TEST_F(FolderDialog, it_begins_where_the_setting_points_and_with_a_folder_that_exists) {
    const std::string shots = makeFolder("Shots");
    world_.settings.setString(screenshotSavePath, shots);
    QPointer<QFileDialog> dialog = &open(screenshotSavePath);
    EXPECT_EQ(dialog->directory().path().toStdString(), shots);
    dialog->reject();
    EXPECT_TRUE(runUntil([&] { return dialog.isNull(); }));
    world_.settings.setString(screenshotSavePath, "/no/such/folder");
    EXPECT_TRUE(open(screenshotSavePath).directory().exists());
}

TEST_F(FolderDialog, it_ends_with_the_view) {
    QPointer<QFileDialog> dialog = &open(screenshotSavePath);
    close();
    EXPECT_TRUE(dialog.isNull());
}

TEST_F(ContentView, a_recorder_shows_a_change_of_the_hot_key_manager) {
    const auto pills = [this] {
        std::vector<QString> names;
        for (QWidget* recorder : view().findChildren<QWidget*>(QStringLiteral("recorder"))) {
            names.push_back(
                accessibleName(*recorder->findChildren<QAbstractButton*>().constFirst()));
        }
        return names;
    };
    EXPECT_THAT(pills(), ElementsAre(QStringLiteral("⌘⇧1"), QStringLiteral("⌘⇧2")));
    world_.manager->setScreenshotKeyCode(20);
    world_.manager->setOcrModifiers(4096);
    QCoreApplication::sendPostedEvents();
    EXPECT_THAT(pills(), ElementsAre(QStringLiteral("⌘⇧3"), QStringLiteral("⌃2")));
}

TEST_F(ContentView, without_an_icon_the_name_and_the_tag_line_are_there) {
    world_.bundle.icon = "/no/such/picture.png";
    EXPECT_EQ(view().findChild<QWidget*>(QStringLiteral("applicationIcon")), nullptr);
    EXPECT_EQ(frame(named("applicationName")).top(), 20);
}

TEST_F(ContentView, everything_is_freed_with_it) {
    QPointer<QWidget> label = &named("tagLine");
    close();
    EXPECT_TRUE(label.isNull());
    world_.settings.setBool(hideDockIcon, true);
    world_.manager->setScreenshotKeyCode(3);
    QCoreApplication::sendPostedEvents();
    EXPECT_THAT(world_.calls.calls(), Not(Contains("activation policy: 1")));
}

}  // namespace
