// What happens when the text cannot be had, or cannot be saved.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "journeys/recognition_journey.h"
#include "journeys/sound_server.h"

namespace journeys {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

/// Where the engine's packages put their data.
fs::path installedData(const std::string& language) {
    for (const char* folder : {"/usr/share/tesseract-ocr/5/tessdata",
                               "/usr/share/tesseract-ocr/4.00/tessdata", "/usr/share/tessdata"}) {
        if (const auto file = fs::path(folder) / (language + ".traineddata"); fs::exists(file)) {
            return file;
        }
    }
    throw std::runtime_error("The data for " + language + " is not installed.");
}

class LanguageData : public RecognitionJourney {
  protected:
    LanguageData() { fs::create_directories(folder); }
    /// As a package does it: written aside, then moved into place.
    void install(const std::string& language) {
        const fs::path file = folder / (language + ".traineddata");
        fs::copy_file(installedData(language), file.string() + ".new");
        fs::rename(file.string() + ".new", file);
    }
    const fs::path folder = session.desktop().directory() / "tessdata";
};

TEST_F(LanguageData, that_is_missing_is_one_line_and_is_used_as_soon_as_it_is_there) {
    SoundServer sounds(session.desktop().directory() / "sound");
    start({{"saveOCRToDownloads", true}, {"showNotifications", true}},
          {{"TESSDATA_PREFIX", folder},
           {"LANG", "de_DE.UTF-8"},
           {"PULSE_SERVER", "unix:" + (session.desktop().directory() / "sound").string()}});
    const std::string sentence = "Müßige Störche stören große Füchse.";
    const TextWindow terminal = openTerminal(sentence + "\n", {100, 100});

    const std::size_t before = dragOver(terminal.area);
    EXPECT_EQ(session.waitForLine(line::textNotRecognized, before),
              "The language data for text recognition is missing; please install the package "
              "tesseract-ocr-eng.");
    // The picture is there, and nothing of a text.
    EXPECT_EQ(session.countSince(before, line::regionCopied), 1U);
    EXPECT_EQ(session.clipboardPicture().picture.width, terminal.area.width);
    EXPECT_THAT(session.downloads(), SizeIs(1));
    EXPECT_THAT(session.downloads().front().string(), EndsWith(".png"));

    install("eng");
    EXPECT_NE(recognize(terminal.area), sentence);
    install("deu");
    EXPECT_EQ(recognize(terminal.area), sentence);

    EXPECT_EQ(session.countSince(before, line::textNotRecognized), 1U);
    session.require("the notifications",
                    [&] { return session.desktop().notifications().size() == 2; });
    session.require("the sounds", [&] { return sounds.visits() == 2; });
}

/// The program as installed by a package whose recognition helper says what the journey wants, and
/// that has lost its sound for texts.
class ScriptedHelper : public RecognitionJourney {
  protected:
    ScriptedHelper() {
        for (const char* name : {"bin", "libexec/lumaframe", "share/lumaframe/sounds"}) {
            fs::create_directories(prefix / name);
        }
        fs::copy_file(LUMAFRAME_PROGRAM, prefix / "bin/lumaframe");
        fs::create_symlink(LUMAFRAME_TEST_SCRIPTED_HELPER, helper);
        session.useProgram(prefix / "bin/lumaframe");
    }
    std::size_t recognizeAs(const std::string& text) {
        std::ofstream(helper.string() + ".answer") << text;
        return dragOver({300, 300, 200, 100});
    }
    const fs::path prefix = session.desktop().directory() / "prefix";
    const fs::path helper = prefix / "libexec/lumaframe/lumaframe-text-helper";
};

TEST_F(ScriptedHelper, a_name_that_is_too_long_for_the_file_system_is_one_line) {
    start({{"saveOCRToDownloads", true}, {"saveToDownloads", false}, {"showNotifications", true}});
    // Fifty characters as a reader counts them, and 350 bytes: no file system of today takes more
    // than 255 for a name.
    std::string text;
    for (int count = 0; count < 50; ++count) {
        text += "e\u0301\u0323\u0331";
    }
    const std::size_t before = recognizeAs(text);
    EXPECT_THAT(session.waitForLine(line::textNotSaved, before), HasSubstr("name"));
    EXPECT_EQ(session.countSince(before, line::textCopied), 1U);
    EXPECT_EQ(clipboardText(), text);
    EXPECT_THAT(session.downloads(), IsEmpty());
    session.require("the notification",
                    [&] { return session.desktop().notifications().size() == 1; });
    EXPECT_EQ(session.desktop().notifications()[0].body, text);
    EXPECT_EQ(session.waitForLine("Failed to play sound: ", before), "Glass");
}

TEST_F(ScriptedHelper, a_text_without_letters_is_saved_under_the_date) {
    start({{"saveOCRToDownloads", true}, {"saveToDownloads", false}, {"showNotifications", true}});
    const std::size_t before = recognizeAs("--- ***");
    const fs::path file = session.waitForLine(line::textSaved, before);
    EXPECT_THAT(file.filename().string(),
                MatchesRegex("OCR Recognition [0-9]{4}-[0-9]{2}-[0-9]{2} at "
                             "[0-9]{2}\\.[0-9]{2}\\.[0-9]{2}\\.txt"));
    const auto bytes = desktop::readFile(file);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "--- ***");
}

TEST_F(ScriptedHelper, fifty_one_characters_are_cut_in_the_notification_alone) {
    start({{"saveOCRToDownloads", true}, {"saveToDownloads", false}, {"showNotifications", true}});
    const std::string text = "../" + std::string(47, 'a') + "b";
    const std::size_t before = recognizeAs(text);
    const fs::path file = session.waitForLine(line::textSaved, before);
    EXPECT_EQ(file, session.desktop().home() / "Downloads" / (std::string(47, 'a') + "b.txt"));
    EXPECT_EQ(clipboardText(), text);
    session.require("the notification",
                    [&] { return session.desktop().notifications().size() == 1; });
    EXPECT_EQ(session.desktop().notifications()[0].body, "../" + std::string(47, 'a') + "...");
}

}  // namespace
}  // namespace journeys
