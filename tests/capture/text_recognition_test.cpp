#include "capture/text_recognition.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "capture_fixture.h"

namespace {

namespace keys = app::keys;

class TextRecognitionTest : public CaptureFixture {
  protected:
    void recognize(std::vector<capture::TextObservation> observations) {
        recognizer.observations = std::move(observations);
        textRecognition.performOCR(picture(4, 2));
        queue.runAll();
        notifications.answer();
    }
    void enableOnly(const std::vector<const char*>& enabled) {
        for (const char* key : {keys::copyOCRToClipboard, keys::saveOCRToDownloads,
                                keys::showNotifications, keys::playSounds}) {
            settings.setBool(key, false);
        }
        for (const char* key : enabled) {
            settings.setBool(key, true);
        }
    }
    [[nodiscard]] std::string body() const { return notifications.posted.back().body; }
};

TEST_F(TextRecognitionTest, a_recogniser_that_cannot_work_is_told_in_one_line) {
    recognizer.error = base::Error{base::ErrorKind::unavailable, "there is no engine"};
    textRecognition.performOCR(picture(4, 2));
    EXPECT_EQ(log.lines, std::vector<std::string>{"Unable to perform OCR: there is no engine."});
    EXPECT_EQ(calls.calls(), (std::vector<std::string>{
                                 "recognize", "log: Unable to perform OCR: there is no engine."}));
}

TEST_F(TextRecognitionTest, a_recogniser_without_an_answer_is_not_told_and_delivers_nothing) {
    enableOnly({keys::copyOCRToClipboard, keys::saveOCRToDownloads, keys::showNotifications,
                keys::playSounds});
    recognizer.error = base::Error{base::ErrorKind::notFound, "There is no answer."};
    textRecognition.performOCR(picture(4, 2));
    queue.runAll();
    EXPECT_EQ(calls.calls(), std::vector<std::string>{"recognize"});
}

TEST_F(TextRecognitionTest, a_sentence_that_ends_itself_is_not_ended_twice) {
    recognizer.error = base::Error{base::ErrorKind::unavailable, "There is no engine."};
    textRecognition.performOCR(picture(4, 2));
    EXPECT_EQ(log.lines, std::vector<std::string>{"Unable to perform OCR: There is no engine."});
}

TEST_F(TextRecognitionTest, the_likeliest_readings_are_joined_and_a_line_without_one_is_skipped) {
    recognize({{{"Hello,", "Hallo,"}}, {{}}, {{"World"}}});
    EXPECT_EQ(pasteboard.text, "Hello,\nWorld");
}

TEST_F(TextRecognitionTest, bytes_that_are_no_utf8_become_replacement_characters) {
    recognize({{{"a\xFFz"}}});
    EXPECT_EQ(pasteboard.text, "a\xEF\xBF\xBDz");
}

TEST_F(TextRecognitionTest, the_text_is_handled_in_a_later_turn) {
    recognizer.observations = {{{"Hello"}}};
    textRecognition.performOCR(picture(4, 2));
    EXPECT_EQ(pasteboard.text, std::nullopt);
    queue.runAll();
    EXPECT_EQ(pasteboard.text, "Hello");
}

TEST_F(TextRecognitionTest, pasteboard_file_notification_and_sound_come_in_this_order) {
    enableOnly({keys::copyOCRToClipboard, keys::saveOCRToDownloads, keys::showNotifications,
                keys::playSounds});
    recognize({{{"Hello World"}}});
    EXPECT_EQ(calls.calls(), (std::vector<std::string>{
                                 "recognize",
                                 "pasteboard clear",
                                 "pasteboard string: Hello World",
                                 "log: OCR complete! Text copied to clipboard.",
                                 "downloads directories",
                                 "file write text: /home/someone/Downloads/Hello World.txt",
                                 "log: OCR text saved to: /home/someone/Downloads/Hello World.txt",
                                 "ask for notifications",
                                 "sound named: Glass",
                                 "sound play: Glass",
                                 "notification: Text Recognized | Hello World",
                             }));
}

TEST_F(TextRecognitionTest, an_empty_recognition_is_delivered_but_makes_no_file) {
    enableOnly({keys::copyOCRToClipboard, keys::saveOCRToDownloads, keys::showNotifications});
    recognize({});
    EXPECT_EQ(pasteboard.text, "");
    EXPECT_EQ(log.lines, std::vector<std::string>{"OCR complete! Text copied to clipboard."});
    EXPECT_TRUE(fileManager.files.empty());
    ASSERT_EQ(notifications.posted.size(), 1U);
    EXPECT_EQ(body(), "");
}

TEST_F(TextRecognitionTest, every_step_asks_its_own_setting_and_no_other) {
    const std::vector<const char*> steps{keys::copyOCRToClipboard, keys::saveOCRToDownloads,
                                         keys::showNotifications, keys::playSounds};
    for (unsigned wish = 0; wish < 16; ++wish) {
        SCOPED_TRACE(wish);
        std::vector<const char*> enabled;
        for (std::size_t step = 0; step < steps.size(); ++step) {
            if ((wish >> step & 1U) != 0) {
                enabled.push_back(steps[step]);
            }
        }
        enableOnly(enabled);
        // Those of the picture say nothing about the text.
        settings.setBool(keys::copyToClipboard, wish % 3 == 0);
        settings.setBool(keys::saveToDownloads, wish % 5 == 0);
        pasteboard.text.reset();
        fileManager.files.clear();
        notifications.posted.clear();
        soundPlayer.played.clear();
        log.lines.clear();
        recognize({{{"Hello World"}}});
        EXPECT_EQ(pasteboard.text.has_value(), (wish & 1U) != 0);
        EXPECT_EQ(fileManager.files.size(), (wish & 2U) != 0 ? 1U : 0U);
        EXPECT_EQ(notifications.posted.size(), (wish & 4U) != 0 ? 1U : 0U);
        EXPECT_EQ(soundPlayer.played.size(), (wish & 8U) != 0 ? 1U : 0U);
        EXPECT_EQ(log.lines.size(), std::size_t{wish & 1U} + (wish >> 1 & 1U));
    }
}

TEST_F(TextRecognitionTest, the_settings_are_those_of_the_moment_of_delivery) {
    enableOnly({});
    recognizer.observations = {{{"Hello"}}};
    textRecognition.performOCR(picture(4, 2));
    settings.setBool(keys::copyOCRToClipboard, true);
    queue.runAll();
    EXPECT_EQ(pasteboard.text, "Hello");
}

TEST_F(TextRecognitionTest, a_recogniser_that_cannot_work_leaves_everything_as_it_is) {
    enableOnly({keys::copyOCRToClipboard, keys::saveOCRToDownloads, keys::showNotifications,
                keys::playSounds});
    pasteboard.text = "before";
    recognizer.error = base::Error{base::ErrorKind::unavailable, "There is no engine."};
    textRecognition.performOCR(picture(4, 2));
    queue.runAll();
    EXPECT_EQ(pasteboard.text, "before");
    EXPECT_TRUE(fileManager.files.empty());
    EXPECT_TRUE(notifications.posted.empty());
    EXPECT_TRUE(soundPlayer.played.empty());
}

TEST_F(TextRecognitionTest, white_space_alone_is_delivered_but_makes_no_file) {
    enableOnly({keys::copyOCRToClipboard, keys::saveOCRToDownloads, keys::showNotifications});
    recognize({{{" "}}, {{"\u00A0"}}});
    EXPECT_EQ(pasteboard.text, " \n\u00A0");
    EXPECT_TRUE(fileManager.files.empty());
    EXPECT_EQ(body(), "");
}

TEST_F(TextRecognitionTest, a_text_without_letters_is_saved_under_the_date) {
    enableOnly({keys::saveOCRToDownloads});
    recognize({{{"--- ***"}}});
    EXPECT_EQ(log.lines, std::vector<std::string>{"OCR text saved to: /home/someone/Downloads/"
                                                  "OCR Recognition 2025-03-07 at 14.05.09.txt"});
}

TEST_F(TextRecognitionTest, a_body_of_fifty_characters_is_whole_and_one_of_fifty_one_is_cut) {
    enableOnly({keys::showNotifications});
    recognize({{{"  " + std::string(50, 'a') + "\n"}}});
    EXPECT_EQ(body(), std::string(50, 'a'));
    recognize({{{std::string(51, 'b')}}});
    EXPECT_EQ(body(), std::string(50, 'b') + "...");
}

TEST_F(TextRecognitionTest, the_body_counts_characters_as_a_reader_sees_them) {
    enableOnly({keys::showNotifications});
    // A family of four people joined by U+200D is one character of 25 bytes.
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466";
    std::string fifty;
    for (int count = 0; count < 50; ++count) {
        fifty += family;
    }
    recognize({{{fifty}}});
    EXPECT_EQ(body(), fifty);
    recognize({{{fifty + "x"}}});
    EXPECT_EQ(body(), fifty + "...");
}

TEST_F(TextRecognitionTest, the_file_holds_the_text_untrimmed) {
    enableOnly({keys::saveOCRToDownloads});
    recognize({{{"  Invoice #123: "}}, {{"Total due "}}});
    EXPECT_EQ(fileText("/home/someone/Downloads/Invoice 123 Total due.txt"),
              "  Invoice #123: \nTotal due ");
}

TEST_F(TextRecognitionTest, texts_that_begin_with_the_same_words_share_a_file) {
    enableOnly({keys::saveOCRToDownloads});
    recognize({{{"one two three four five six"}}});
    recognize({{{"one two three four five seven"}}});
    EXPECT_EQ(fileManager.files.size(), 1U);
    EXPECT_EQ(fileText("/home/someone/Downloads/one two three four five.txt"),
              "one two three four five seven");
}

TEST_F(TextRecognitionTest, a_chosen_folder_is_used_as_it_stands) {
    enableOnly({keys::saveOCRToDownloads});
    fileManager.addFolder("/srv/texts");
    settings.setString(keys::ocrSavePath, "/srv/texts");
    recognize({{{"Hello"}}});
    EXPECT_EQ(log.lines, std::vector<std::string>{"OCR text saved to: /srv/texts/Hello.txt"});
}

TEST_F(TextRecognitionTest, an_empty_folder_setting_is_like_none) {
    enableOnly({keys::saveOCRToDownloads});
    settings.setString(keys::ocrSavePath, "");
    recognize({{{"Hello"}}});
    EXPECT_EQ(log.lines,
              std::vector<std::string>{"OCR text saved to: /home/someone/Downloads/Hello.txt"});
}

TEST_F(TextRecognitionTest, without_a_downloads_folder_the_file_is_skipped_without_a_word) {
    enableOnly({keys::copyOCRToClipboard, keys::saveOCRToDownloads, keys::showNotifications,
                keys::playSounds});
    fileManager.downloads.clear();
    recognize({{{"Hello"}}});
    EXPECT_EQ(log.lines, std::vector<std::string>{"OCR complete! Text copied to clipboard."});
    EXPECT_EQ(body(), "Hello");
    EXPECT_EQ(soundPlayer.played, std::vector<std::string>{"theme/Glass"});
}

TEST_F(TextRecognitionTest, a_file_that_cannot_be_written_is_told_and_the_rest_still_happens) {
    enableOnly({keys::copyOCRToClipboard, keys::saveOCRToDownloads, keys::showNotifications,
                keys::playSounds});
    fileManager.writeError = base::Error{base::ErrorKind::failed, "The disk is full."};
    recognize({{{"Hello"}}});
    EXPECT_EQ(log.lines, (std::vector<std::string>{"OCR complete! Text copied to clipboard.",
                                                   "Failed to save OCR text: The disk is full."}));
    EXPECT_EQ(pasteboard.text, "Hello");
    EXPECT_EQ(body(), "Hello");
    EXPECT_EQ(soundPlayer.played, std::vector<std::string>{"theme/Glass"});
}

}  // namespace
