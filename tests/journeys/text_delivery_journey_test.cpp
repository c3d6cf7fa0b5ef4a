// Where a recognised text goes: clipboard, file, notification and sound.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>

#include "journeys/recognition_journey.h"
#include "journeys/sound_server.h"

namespace journeys {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* invoice =
    "Invoice #123: Total due on the first of May\n"
    "is 48.20, to be paid at the harbour office.\n";

std::string contentsOf(const fs::path& path) {
    const auto bytes = desktop::readFile(path);
    return {bytes.begin(), bytes.end()};
}

class TextDelivery : public RecognitionJourney {
  protected:
    void startWith(const nlohmann::json& settings) {
        start(settings, {{"PULSE_SERVER", "unix:" + soundSocket.string()}});
    }
    /// The lines about what was delivered, in their order.
    [[nodiscard]] std::vector<std::string> deliveryLines(std::size_t mark) const {
        std::vector<std::string> found;
        for (const std::string& text : session.linesSince(mark)) {
            for (const char* prefix :
                 {line::regionCopied, line::saved, line::notSaved, line::textCopied,
                  line::textSaved, line::textNotSaved, line::textNotRecognized}) {
                if (text.starts_with(prefix)) {
                    found.push_back(text);
                }
            }
        }
        return found;
    }
    /// Everything that the program had begun is done, as far as the program itself does it.
    void waitForPrevious() {
        session.openRecognitionOverlay();
        session.cancelOverlay();
    }
    void expectNotifications(std::size_t count) {
        session.require("notification " + std::to_string(count),
                        [&] { return session.desktop().notifications().size() >= count; });
        EXPECT_EQ(session.desktop().notifications().size(), count);
    }
    [[nodiscard]] std::string lastBody() {
        const auto last = session.desktop().notifications().back();
        EXPECT_EQ(last.title, "Text Recognized");
        return last.body;
    }
    /// A row of the terminal's text, with room above and below.
    static Area row(const TextWindow& terminal, int index, int rows) {
        constexpr int border = 10;
        const int height = (terminal.area.height - 2 * border) / rows;
        return {terminal.area.x, terminal.area.y + border + height * index - height / 2,
                terminal.area.width, 2 * height};
    }
    [[nodiscard]] fs::path downloadsFolder() { return session.desktop().home() / "Downloads"; }

    const fs::path soundSocket = session.desktop().directory() / "sound";
    SoundServer sounds{soundSocket};
};

TEST_F(TextDelivery, the_picture_comes_first_then_the_text_in_every_form) {
    startWith({{"saveOCRToDownloads", true}, {"showNotifications", true}});
    const TextWindow terminal = openTerminal(invoice, {100, 100});
    const std::size_t before = dragOver(terminal.area);
    const fs::path file = session.waitForLine(line::textSaved, before);
    const fs::path picture = session.waitForLine(line::saved, before);
    EXPECT_THAT(deliveryLines(before),
                ElementsAre(line::regionCopied, line::saved + picture.string(), line::textCopied,
                            line::textSaved + file.string()));
    EXPECT_EQ(file, downloadsFolder() / "Invoice 123 Total due on.txt");
    // Nothing that was written aside is left.
    EXPECT_THAT(session.downloads(), ElementsAre(file, picture));
    expectRead(invoice, contentsOf(file));
    EXPECT_EQ(contentsOf(file), clipboardText());
    EXPECT_THAT(session.clipboard().targets(), Not(Contains("image/png")));
    const auto saved = desktop::decodePng(desktop::readFile(picture)).picture;
    EXPECT_EQ(desktop::difference(session.screen(terminal.area), saved), "equal");
    expectNotifications(1);
    EXPECT_EQ(lastBody(), "Invoice #123: Total due on the first of May is 48....");
    session.require("the sound", [&] { return sounds.visits() > 0; });
    waitForPrevious();
    EXPECT_EQ(sounds.visits(), 1);
    EXPECT_EQ(session.desktop().notifications().size(), 1U);
}

TEST_F(TextDelivery, what_was_read_and_what_windows_are_called_is_in_no_line) {
    startWith({{"saveOCRToDownloads", false}, {"showNotifications", true}});
    const TextWindow terminal = openTerminal(invoice, {100, 100});
    const desktop::TestWindow window(session.desktop().displayName(),
                                     {.x = 700, .y = 400, .title = "Resignation letter"});
    expectRead(invoice, recognize(terminal.area));
    expectNotifications(1);
    session.openOverlay();
    const std::size_t before = session.mark();
    session.input().tap(desktop::key::space);
    session.waitForLine(line::toggled, before);
    const desktop::Place at{window.place().x + 50, window.place().y + 50};
    session.input().moveTo({at.x - 1, at.y});
    session.input().click(at);
    session.waitForLine(line::saved, before);
    session.waitUntilClosed();
    for (const auto& lines : {session.linesSince(0), session.program().errorLines()}) {
        for (const char* secret : {"nvoice", "harbour", "48.20", "esignation", "letter"}) {
            EXPECT_THAT(lines, Each(Not(HasSubstr(secret))));
        }
    }
}

/// Which of the steps are wanted, as bits.
struct Wish {
    unsigned bits = 0;

    [[nodiscard]] bool text() const { return (bits & 1U) != 0; }
    [[nodiscard]] bool file() const { return (bits & 2U) != 0; }
    [[nodiscard]] bool notification() const { return (bits & 4U) != 0; }
    [[nodiscard]] bool sound() const { return (bits & 8U) != 0; }
};

class EveryWish : public TextDelivery {
  protected:
    /// The pictures of each wish go to a folder of its own: that tells which settings held.
    [[nodiscard]] fs::path folderOf(Wish wish) {
        return session.desktop().home() / ("wish" + std::to_string(wish.bits));
    }
    nlohmann::json settingsOf(Wish wish) {
        session.leftOnDisk().expect(folderOf(wish));
        fs::create_directories(folderOf(wish));
        return {{"screenshotSavePath", folderOf(wish).string()},
                {"ocrSavePath", folderOf(wish).string()},
                {"copyOCRToClipboard", wish.text()},
                {"saveOCRToDownloads", wish.file()},
                {"showNotifications", wish.notification()},
                {"playSounds", wish.sound()}};
    }
    /// Recognises once, checks what came against the settings that held, and gives these.
    Wish recognizeAndCheck(const Area& area) {
        const std::size_t before = dragOver(area);
        const fs::path picture = session.waitForLine(line::saved, before);
        const std::string folder = picture.parent_path().filename();
        const Wish held{static_cast<unsigned>(std::stoul(folder.substr(4)))};
        waitForPrevious();
        SCOPED_TRACE("wish " + std::to_string(held.bits));
        EXPECT_EQ(session.countSince(before, line::regionCopied), 1U);
        EXPECT_EQ(session.countSince(before, line::textCopied), held.text() ? 1U : 0U);
        EXPECT_EQ(session.countSince(before, line::textSaved), held.file() ? 1U : 0U);
        EXPECT_THAT(session.clipboard().targets(),
                    Contains(held.text() ? "UTF8_STRING" : "image/png"));
        EXPECT_EQ(fs::exists(picture.parent_path() / "Tide.txt"), held.file());
        notifications_ += held.notification() ? 1 : 0;
        sounds_ += held.sound() ? 1 : 0;
        expectNotifications(notifications_);
        session.require("the sound", [&] { return sounds.visits() >= sounds_; });
        EXPECT_EQ(sounds.visits(), sounds_);
        return held;
    }

  private:
    std::size_t notifications_ = 0;
    int sounds_ = 0;
};

TEST_F(EveryWish, is_granted_and_nothing_else_happens) {
    startWith(settingsOf({0}));
    const TextWindow terminal = openTerminal("Tide\n", {100, 100});
    for (unsigned bits = 0; bits < 16; ++bits) {
        session.writeSettings(settingsOf({bits}));
        // The file is watched, not polled: the change arrives a moment later.
        session.require("The new settings to hold",
                        [&] { return recognizeAndCheck(terminal.area).bits == bits; });
    }
}

TEST_F(TextDelivery, the_file_is_named_by_the_first_words) {
    startWith({{"saveOCRToDownloads", true}, {"saveToDownloads", false}});
    const std::vector<std::string> lines{
        "", "foo-bar goes with two other words",
        "", "Alpha beta gamma delta epsilon first",
        "", "Alpha beta gamma delta epsilon second",
        "", "international communications representatives understanding",
        "",
    };
    std::string text;
    for (const std::string& one : lines) {
        text += one + "\n";
    }
    const TextWindow terminal = openTerminal(text, {100, 100});
    const auto save = [&](int index) {
        const int rows = static_cast<int>(lines.size()) + 1;
        const std::size_t before = dragOver(row(terminal, index, rows));
        const fs::path file = session.waitForLine(line::textSaved, before);
        EXPECT_EQ(contentsOf(file), lines.at(static_cast<std::size_t>(index)));
        return file.filename().string();
    };
    EXPECT_EQ(save(1), "foo bar goes with two other.txt");
    EXPECT_EQ(save(3), "Alpha beta gamma delta epsilon.txt");
    EXPECT_EQ(save(5), "Alpha beta gamma delta epsilon.txt");
    EXPECT_EQ(save(7), "international communications representatives under.txt");
    EXPECT_EQ(session.downloads().size(), 3U);
}

TEST_F(TextDelivery, a_region_without_text_empties_the_clipboard_and_makes_no_file) {
    startWith(
        {{"saveOCRToDownloads", true}, {"saveToDownloads", false}, {"showNotifications", true}});
    const TextWindow terminal = openTerminal(invoice, {100, 100});
    ASSERT_FALSE(recognize(terminal.area).empty());
    expectNotifications(1);
    ASSERT_EQ(session.downloads().size(), 1U);
    std::size_t notified = 1;
    // The gradient, a single colour inside the terminal's border, and three pixels by three.
    for (const Area& area :
         {Area{100, 400, 600, 300}, Area{terminal.area.x + 1, terminal.area.y + 1, 300, 8},
          Area{700, 500, 3, 3}}) {
        EXPECT_EQ(recognize(area), "");
        expectNotifications(++notified);
        EXPECT_EQ(lastBody(), "");
    }
    EXPECT_EQ(session.downloads().size(), 1U);
}

TEST_F(TextDelivery, a_folder_that_does_not_exist_is_one_line_and_the_rest_still_happens) {
    startWith({{"saveOCRToDownloads", true},
               {"ocrSavePath", (session.desktop().home() / "not here").string()},
               {"showNotifications", true}});
    const TextWindow terminal = openTerminal("Tide\n", {100, 100});
    const std::size_t before = dragOver(terminal.area);
    EXPECT_FALSE(session.waitForLine(line::textNotSaved, before).empty());
    EXPECT_EQ(session.countSince(before, line::textCopied), 1U);
    EXPECT_EQ(clipboardText(), "Tide");
    expectNotifications(1);
    EXPECT_EQ(lastBody(), "Tide");
    session.require("the sound", [&] { return sounds.visits() == 1; });
    EXPECT_FALSE(fs::exists(session.desktop().home() / "not here"));
}

class NoisyDesktop : public RecognitionJourney {
  protected:
    NoisyDesktop() : RecognitionJourney({}, desktop::Wallpaper::Motif::pattern) {}
};

TEST_F(NoisyDesktop, gives_no_text) {
    start();
    EXPECT_EQ(recognize({50, 50, 1200, 700}), "");
    EXPECT_EQ(recognize({300, 300, 3, 3}), "");
}

}  // namespace
}  // namespace journeys
