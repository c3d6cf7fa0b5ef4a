#include "capture/image_delivery.h"

#include <gmock/gmock.h>

#include <set>
#include <string>

#include "capture_fixture.h"

namespace {

using base::CaptureMode;
using testing::ElementsAre;
using testing::IsEmpty;
namespace keys = app::keys;

constexpr const char* target = "/home/someone/Downloads/Screenshot 2025-03-07 at 14.05.09.png";
const std::string savedLine = std::string("log: Screenshot saved to: ") + target;

const std::set<std::string> allSteps{keys::copyToClipboard, keys::saveToDownloads,
                                     keys::showNotifications, keys::playSounds};

class ImageDeliveryTest : public CaptureFixture {
  protected:
    void enableOnly(const std::set<std::string>& steps) {
        for (const std::string& step : allSteps) {
            settings.setBool(step, steps.contains(step));
        }
    }
    void deliver(CaptureMode mode = CaptureMode::screenshot) {
        imageDelivery.deliverRegionImage(delivery(mode));
        queue.runAll();
    }
    /// The text of the notification after one delivery.
    std::string notifiedBody() {
        enableOnly({keys::showNotifications});
        deliver();
        notifications.answer();
        return notifications.posted.empty() ? "nothing" : notifications.posted.back().body;
    }
};

// The order of the steps

TEST_F(ImageDeliveryTest, pasteboard_file_notification_sound) {
    enableOnly(allSteps);
    imageDelivery.deliverRegionImage(delivery());
    EXPECT_THAT(
        calls.calls(),
        ElementsAre("pasteboard clear", "pasteboard image", "log: Retina screenshot copied!",
                    "downloads directories", "encode", std::string("file write: ") + target,
                    savedLine, "ask for notifications", "sound named: Hero", "sound play: Hero"));
    queue.runAll();
}

TEST_F(ImageDeliveryTest, a_fresh_store_copies_saves_and_plays_without_a_notification) {
    deliver();
    EXPECT_EQ(pasteboard.writeCount, 1);
    EXPECT_EQ(fileManager.writeCount, 1);
    EXPECT_EQ(notifications.requestCount, 0);
    EXPECT_THAT(soundPlayer.played, ElementsAre("theme/Hero"));
}

TEST_F(ImageDeliveryTest, a_window_is_named_by_its_number) {
    imageDelivery.deliverWindowImage(delivery(), 4711);
    queue.runAll();
    EXPECT_EQ(log.lines.at(0), "Window screenshot copied! ID: 4711");
    imageDelivery.deliverWindowImage(delivery(), 4294967295U);
    queue.runAll();
    EXPECT_EQ(log.lines.at(2), "Window screenshot copied! ID: 4294967295");
}

TEST_F(ImageDeliveryTest, a_window_takes_the_same_steps_as_a_region) {
    enableOnly(allSteps);
    imageDelivery.deliverRegionImage(delivery());
    queue.runAll();
    auto ofRegion = calls.calls();
    calls.clear();
    imageDelivery.deliverWindowImage(delivery(), 1);
    queue.runAll();
    ofRegion.at(2) = "log: Window screenshot copied! ID: 1";
    EXPECT_EQ(calls.calls(), ofRegion);
}

TEST_F(ImageDeliveryTest, with_everything_off_nothing_is_called_at_all) {
    enableOnly({});
    deliver();
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(ImageDeliveryTest, each_step_has_a_setting_of_its_own) {
    enableOnly({keys::copyToClipboard});
    deliver();
    EXPECT_THAT(calls.calls(), ElementsAre("pasteboard clear", "pasteboard image",
                                           "log: Retina screenshot copied!", "encode"));
    calls.clear();
    enableOnly({keys::saveToDownloads});
    deliver();
    EXPECT_THAT(calls.calls(), ElementsAre("downloads directories", "encode",
                                           std::string("file write: ") + target, savedLine));
    calls.clear();
    enableOnly({keys::showNotifications});
    deliver();
    EXPECT_THAT(calls.calls(), ElementsAre("ask for notifications"));
    calls.clear();
    enableOnly({keys::playSounds});
    deliver();
    EXPECT_THAT(calls.calls(), ElementsAre("sound named: Hero", "sound play: Hero"));
}

TEST_F(ImageDeliveryTest, the_settings_are_read_at_each_delivery) {
    deliver();
    settings.setBool(keys::copyToClipboard, false);
    settings.setBool(keys::playSounds, false);
    deliver();
    EXPECT_EQ(pasteboard.writeCount, 1);
    EXPECT_EQ(fileManager.writeCount, 2);
    EXPECT_EQ(soundPlayer.played.size(), 1U);
}

TEST_F(ImageDeliveryTest, the_file_and_the_pasteboard_share_one_encoding) {
    deliver();
    EXPECT_EQ(encoder.encodeCount, 1);
    ASSERT_NE(pasteboard.image, nullptr);
    EXPECT_EQ(*pasteboard.image->pngRepresentation(), fileManager.files.at(target));
    EXPECT_EQ(encoder.encodeCount, 1);
}

TEST_F(ImageDeliveryTest, a_picture_for_the_pasteboard_alone_is_encoded_after_the_delivery) {
    enableOnly({keys::copyToClipboard, keys::playSounds});
    imageDelivery.deliverRegionImage(delivery());
    EXPECT_EQ(encoder.encodeCount, 0);
    queue.runAll();
    EXPECT_EQ(encoder.encodeCount, 1);
}

TEST_F(ImageDeliveryTest, a_picture_that_nobody_offers_any_more_is_not_encoded) {
    enableOnly({keys::copyToClipboard});
    imageDelivery.deliverRegionImage(delivery());
    pasteboard.clearContents();
    queue.runAll();
    EXPECT_EQ(encoder.encodeCount, 0);
}

// Text recognition

TEST_F(ImageDeliveryTest, in_ocr_mode_the_picture_is_copied_and_saved_and_then_read) {
    enableOnly(allSteps);
    recognizer.error = base::Error{base::ErrorKind::failed, "It is dark"};
    deliver(CaptureMode::ocr);
    EXPECT_THAT(
        calls.calls(),
        ElementsAre("pasteboard clear", "pasteboard image", "log: Retina screenshot copied!",
                    "downloads directories", "encode", std::string("file write: ") + target,
                    savedLine, "recognize", "log: Unable to perform OCR: It is dark."));
}

TEST_F(ImageDeliveryTest, the_recogniser_gets_the_untouched_pixels) {
    deliver(CaptureMode::ocr);
    ASSERT_EQ(recognizer.images.size(), 1U);
    EXPECT_EQ(recognizer.images[0].width(), 4);
    EXPECT_EQ(recognizer.images[0].height(), 2);
    EXPECT_EQ(recognizer.images[0].row(1)[0], 0x7F);
}

// The file

TEST_F(ImageDeliveryTest, the_file_is_named_by_the_local_time) {
    deliver();
    EXPECT_EQ(fileText(target), "PNG 4x2 2.0x1.0");
    clock.set(2031, 12, 24, 0, 0, 0);
    deliver();
    EXPECT_EQ(fileText("/home/someone/Downloads/Screenshot 2031-12-24 at 00.00.00.png"),
              "PNG 4x2 2.0x1.0");
}

TEST_F(ImageDeliveryTest, the_folder_of_the_settings_is_used_as_it_stands) {
    fileManager.addFolder("/Users/someone/Größe und Maß");
    settings.setString(keys::screenshotSavePath, "/Users/someone/Größe und Maß");
    deliver();
    const std::string path = "/Users/someone/Größe und Maß/Screenshot 2025-03-07 at 14.05.09.png";
    EXPECT_EQ(fileText(path), "PNG 4x2 2.0x1.0");
    EXPECT_EQ(calls.count("log: Screenshot saved to: " + path), 1);
    EXPECT_EQ(fileManager.downloadsCount, 0);
}

TEST_F(ImageDeliveryTest, a_folder_with_a_slash_at_its_end_gets_no_second_one) {
    fileManager.addFolder("/Shots");
    settings.setString(keys::screenshotSavePath, "/Shots/");
    deliver();
    EXPECT_EQ(calls.count("log: Screenshot saved to: /Shots/Screenshot 2025-03-07 at 14.05.09.png"),
              1);
}

TEST_F(ImageDeliveryTest, an_empty_folder_setting_is_like_none) {
    settings.setString(keys::screenshotSavePath, "");
    deliver();
    EXPECT_EQ(fileText(target), "PNG 4x2 2.0x1.0");
}

TEST_F(ImageDeliveryTest, a_folder_setting_of_another_type_is_like_none) {
    settings.setInteger(keys::screenshotSavePath, 7);
    deliver();
    EXPECT_EQ(fileText(target), "PNG 4x2 2.0x1.0");
}

TEST_F(ImageDeliveryTest, of_several_downloads_folders_the_first_is_used) {
    fileManager.addFolder("/first");
    fileManager.addFolder("/second");
    fileManager.downloads = {"/first", "/second"};
    deliver();
    EXPECT_EQ(fileText("/first/Screenshot 2025-03-07 at 14.05.09.png"), "PNG 4x2 2.0x1.0");
}

TEST_F(ImageDeliveryTest, with_saving_off_a_chosen_folder_stays_empty) {
    fileManager.addFolder("/Shots");
    settings.setString(keys::screenshotSavePath, "/Shots");
    settings.setBool(keys::saveToDownloads, false);
    deliver();
    EXPECT_EQ(fileManager.writeCount, 0);
}

TEST_F(ImageDeliveryTest, the_later_of_two_pictures_in_one_second_replaces_the_earlier) {
    deliver();
    auto other = delivery();
    other.image =
        std::make_shared<capture::CapturedImage>(picture(8, 8), base::Size{8, 8}, encoder);
    imageDelivery.deliverRegionImage(other);
    queue.runAll();
    EXPECT_EQ(fileManager.files.size(), 1U);
    EXPECT_EQ(fileText(target), "PNG 8x8 8.0x8.0");
    EXPECT_EQ(calls.count(savedLine), 2);
}

TEST_F(ImageDeliveryTest,
       a_clock_that_is_set_back_replaces_no_picture_but_that_of_the_same_second) {
    deliver();
    const auto first = fileManager.files;
    clock.set(2025, 3, 7, 14, 5, 8);
    deliver();
    EXPECT_EQ(fileManager.files.size(), 2U);
    EXPECT_EQ(fileManager.files.at(target), first.at(target));
    clock.set(2025, 3, 7, 14, 5, 9);
    deliver();
    EXPECT_EQ(fileManager.files.size(), 2U);
}

// What can go wrong with it: the other steps still run

class FailingImageDeliveryTest : public ImageDeliveryTest {
  protected:
    FailingImageDeliveryTest() { enableOnly(allSteps); }
    void expectTheOtherSteps() {
        notifications.answer();
        EXPECT_EQ(pasteboard.writeCount, 1);
        EXPECT_EQ(notifications.posted.size(), 1U);
        EXPECT_THAT(soundPlayer.played, ElementsAre("theme/Hero"));
        EXPECT_THAT(fileManager.files, IsEmpty());
    }
};

TEST_F(FailingImageDeliveryTest, without_a_folder_a_line_says_so) {
    fileManager.downloads.clear();
    deliver();
    EXPECT_THAT(log.lines,
                ElementsAre("Retina screenshot copied!", "Could not find save directory"));
    expectTheOtherSteps();
}

TEST_F(FailingImageDeliveryTest, a_picture_that_cannot_be_encoded_is_said) {
    encoder.error = base::Error{base::ErrorKind::failed, "Out of memory."};
    deliver();
    EXPECT_THAT(log.lines,
                ElementsAre("Retina screenshot copied!", "Failed to convert image to PNG"));
    expectTheOtherSteps();
}

TEST_F(FailingImageDeliveryTest, a_file_that_cannot_be_written_is_said_with_the_reason) {
    fileManager.writeError = base::Error{base::ErrorKind::failed, "The disk is full."};
    deliver();
    EXPECT_THAT(log.lines, ElementsAre("Retina screenshot copied!",
                                       "Failed to save screenshot: The disk is full."));
    expectTheOtherSteps();
}

TEST_F(FailingImageDeliveryTest, a_folder_that_does_not_exist_is_not_checked_before) {
    settings.setString(keys::screenshotSavePath, "/gone");
    deliver();
    EXPECT_THAT(log.lines, ElementsAre("Retina screenshot copied!",
                                       "Failed to save screenshot: The folder does not exist."));
    expectTheOtherSteps();
}

TEST_F(FailingImageDeliveryTest, in_ocr_mode_the_text_is_read_all_the_same) {
    encoder.error = base::Error{base::ErrorKind::failed, "Out of memory."};
    deliver(CaptureMode::ocr);
    EXPECT_EQ(recognizer.images.size(), 1U);
}

// The sound

TEST_F(ImageDeliveryTest, a_sound_the_desktop_has_is_not_looked_for_in_files) {
    confirmation.playSound("Glass");
    EXPECT_THAT(calls.calls(), ElementsAre("sound named: Glass", "sound play: Glass"));
}

TEST_F(ImageDeliveryTest, a_sound_the_desktop_has_not_is_played_from_its_file) {
    soundPlayer.named.clear();
    soundPlayer.fallbackFiles["Hero"] = "/sounds/Hero";
    confirmation.playSound("Hero");
    EXPECT_THAT(calls.calls(),
                ElementsAre("sound named: Hero", "sound file: Hero", "sound play: Hero"));
    EXPECT_THAT(soundPlayer.played, ElementsAre("/sounds/Hero"));
}

TEST_F(ImageDeliveryTest, a_sound_that_nobody_has_is_said) {
    soundPlayer.named.clear();
    confirmation.playSound("Hero");
    EXPECT_THAT(log.lines, ElementsAre("Failed to play sound: Hero"));
    EXPECT_THAT(soundPlayer.played, IsEmpty());
}

// The notification

TEST_F(ImageDeliveryTest, a_notification_is_posted_once_it_is_allowed) {
    confirmation.postNotification("Title", "Body");
    EXPECT_THAT(notifications.posted, IsEmpty());
    notifications.answer();
    ASSERT_EQ(notifications.posted.size(), 1U);
    EXPECT_EQ(notifications.posted[0].title, "Title");
    EXPECT_EQ(notifications.posted[0].body, "Body");
    EXPECT_EQ(notifications.posted[0].identifier, "identifier-1");
}

TEST_F(ImageDeliveryTest, a_notification_that_is_not_allowed_is_dropped_without_a_word) {
    notifications.authorization = capture::Authorization::denied;
    confirmation.postNotification("Title", "Body");
    notifications.answer();
    EXPECT_THAT(notifications.posted, IsEmpty());
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(ImageDeliveryTest, every_notification_asks_anew_and_has_an_identifier_of_its_own) {
    confirmation.postNotification("Title", "Body");
    notifications.answer();
    confirmation.postNotification("Title", "Body");
    notifications.answer();
    EXPECT_EQ(notifications.requestCount, 2);
    EXPECT_NE(notifications.posted.at(0).identifier, notifications.posted.at(1).identifier);
}

TEST_F(ImageDeliveryTest, with_both_deliveries_off_the_notification_still_says_saved) {
    EXPECT_EQ(notifiedBody(), "Saved to Downloads");
    EXPECT_EQ(notifications.posted.at(0).title, "Screenshot Captured");
    EXPECT_EQ(pasteboard.clearCount, 0);
    EXPECT_EQ(fileManager.writeCount, 0);
}

TEST_F(ImageDeliveryTest, the_notification_names_the_last_part_of_the_chosen_folder) {
    settings.setString(keys::screenshotSavePath, "/Users/someone/Pictures/Shots");
    EXPECT_EQ(notifiedBody(), "Saved to Shots");
    settings.setString(keys::screenshotSavePath, "/Users/someone/Größe und Maß/");
    EXPECT_EQ(notifiedBody(), "Saved to Größe und Maß");
    settings.setString(keys::screenshotSavePath, "");
    EXPECT_EQ(notifiedBody(), "Saved to Downloads");
}

}  // namespace
