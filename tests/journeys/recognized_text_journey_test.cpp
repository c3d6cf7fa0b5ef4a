// Text that real programs show, taken with real drags and compared with what they were given.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "journeys/recognition_journey.h"

namespace journeys {
namespace {

using testing::ElementsAre;

constexpr const char* listing = R"(total 48
-rw-r--r-- 1 ada users 18204 Mar  7 14:05 harbour.csv
-rwxr-xr-x 1 ada users   932 Feb 28 09:12 update-tides.sh
drwxr-xr-x 2 ada users  4096 Jan 15 22:40 photographs
ada@quay:~$ ./update-tides.sh --since 2025-03-01
Reading 214 rows from harbour.csv ... done (0.8 s)
)";

constexpr const char* log = R"(warning: "rainfall" is never used [unused-variable]
    12 | for (const auto& [town, hours] : table) {
error: 'hours' was not declared in this scope; did you mean 'house'?
2 warnings and 1 error generated.
)";

class RecognizedText : public RecognitionJourney {
  protected:
    using RecognitionJourney::RecognitionJourney;

    /// A terminal with another way to draw letters than xterm's: GTK's, through VTE.
    TextWindow openVte(const std::string& name, const std::string& text, Place place,
                       const std::string& background, const std::string& foreground) {
        const auto config = session.desktop().directory() / (name + "-config");
        std::filesystem::create_directories(config / "lxterminal");
        std::ofstream(config / "lxterminal/lxterminal.conf")
            << "[general]\nfontname=DejaVu Sans Mono 11\nhidescrollbar=true\nhidemenubar=true\n"
            << "color_preset=Custom\nbgcolor=" << background << "\nfgcolor=" << foreground
            << "\ngeometry_columns=70\ngeometry_rows=8\ncursorblinks=false\n";
        return open(name,
                    {"lxterminal", "--no-remote", "--geometry=70x8",
                     "--command=sh " + printingScript(name, text)},
                    place, text.size(), {{"XDG_CONFIG_HOME", config}});
    }
    TextWindow openGtkDialog(Place place, const std::string& theme) {
        return open(
            "yad-" + theme,
            {"yad", "--title", "Editor", "--borders", "16", "--image", "dialog-warning", "--text",
             dialogText + "\n" + dialogDetails, "--button", "Discard", "--button", "Save as..."},
            place, dialogText.size() + dialogDetails.size(),
            {{"GTK_THEME", "Adwaita" + std::string(theme == "dark" ? ":dark" : "")},
             {"NO_AT_BRIDGE", "1"}});
    }
    TextWindow openQtDialog(Place place, const std::string& theme) {
        return open("message-box-" + theme,
                    {LUMAFRAME_TEST_MESSAGE_BOX, theme, dialogText, dialogDetails, dialogCheckBox},
                    place, dialogText.size() + dialogDetails.size());
    }
    /// What a person takes of a dialog: the two sentences, without icon, check box and buttons.
    static Area sentencesOf(const TextWindow& dialog, int iconWidth, int height) {
        return {dialog.area.x + iconWidth, dialog.area.y, dialog.area.width - iconWidth, height};
    }
    /// Where sentences are broken is the toolkit's choice, which depends on the scale.
    static std::string inOneLine(std::string text) {
        std::replace(text.begin(), text.end(), '\n', ' ');
        return text;
    }
    /// Icons and the edges of buttons may leave a few marks beside `buttons`, whose letters may
    /// suffer, but take nothing from the sentences.
    static void expectWholeDialog(const std::string& truth, const std::string& buttons,
                                  const std::string& reading) {
        const std::string text = inOneLine(reading);
        EXPECT_THAT(text, testing::StartsWith(truth));
        constexpr std::size_t mostMarks = 8;
        EXPECT_LE(text.size(), truth.size() + 1 + buttons.size() + mostMarks) << text;
    }

    /// A page with a light half above a dark one, of 222 points each.
    TextWindow openBrowser(Place place) {
        const auto page = session.desktop().directory() / "tides.html";
        std::ofstream(page) << R"(<!DOCTYPE html><meta charset="utf-8"><title>Tides</title>
<style>
body { margin: 0; font: 15px sans-serif; background: #fff; color: #222 }
div { padding: 1px 30px; height: 220px }
.dark { background: #1b1f27; color: #e8e6e3 }
.dark a { color: #8ab4f8 }
</style>
<div><h1>Tide tables for small harbours</h1>
<p>High water comes about fifty minutes later each day.</p>
<p>The <a href="table">harbour office</a> prints a new table every Monday, for 2.50 a copy.</p></div>
<div class="dark"><h2>What the words mean</h2>
<p>Spring tides follow the full moon by a day or two.</p>
<p>At <a href="neap">neap tides</a> the water rises least: 0.8 metres or less.</p></div>
)";
        return open("netsurf", {"netsurf-gtk", "file://" + page.string()}, place, 400,
                    {{"NO_AT_BRIDGE", "1"}});
    }

    const testing::Matcher<std::vector<std::string>> lightLines = ElementsAre(
        "Tide tables for small harbours", "High water comes about fifty minutes later each day.",
        "The harbour office prints a new table every Monday, for 2.50 a copy.");
    const testing::Matcher<std::vector<std::string>> darkLines =
        ElementsAre("What the words mean", "Spring tides follow the full moon by a day or two.",
                    "At neap tides the water rises least: 0.8 metres or less.");

    const std::string dialogText = "The notes were changed by another program.";
    const std::string dialogDetails = "Your own changes will be lost if you do not save them.";
    const std::string dialogCheckBox = "Do not ask again for this folder";
    const std::string sentences = dialogText + " " + dialogDetails;
    const std::string withCheckBox = sentences + " " + dialogCheckBox;
};

TEST_F(RecognizedText, of_a_terminal_light_and_dark) {
    start();
    const TextWindow light = openTerminal(listing, {60, 60}, "#fffdf4", "#26323c");
    const TextWindow dark = openTerminal(log, {300, 400}, "#1e2430", "#d7e3f4");
    keepPicture("recognized-terminal");
    expectRead(listing, recognize(light.area));
    // A colon by itself between words is not always seen.
    expectRead(log, recognize(dark.area), 1);
}

TEST_F(RecognizedText, of_a_terminal_with_another_font_renderer_light_and_dark) {
    start();
    const TextWindow light = openVte("light", log, {60, 60}, "#ffffff", "#202020");
    const TextWindow dark = openVte("dark", listing, {300, 400}, "#000000", "#c8c8c8");
    keepPicture("recognized-vte");
    expectRead(log, recognize(light.area));
    expectRead(listing, recognize(dark.area));
}

TEST_F(RecognizedText, of_a_page_in_a_browser_light_and_dark) {
    start();
    const TextWindow browser = openBrowser({80, 40});
    // The page comes later than the window around it.
    constexpr int toolbar = 48;
    const Area light{browser.area.x + 10, browser.area.y + toolbar, 700, 205};
    const Area dark{browser.area.x + 10, browser.area.y + toolbar + 222, 700, 205};
    waitForText(light, 140);
    waitForText(dark, 120);
    keepPicture("recognized-browser");
    EXPECT_THAT(linesOf(recognize(light)), lightLines);
    EXPECT_THAT(linesOf(recognize(dark)), darkLines);
}

TEST_F(RecognizedText, of_a_gtk_dialog_light_and_dark) {
    start();
    const TextWindow light = openGtkDialog({100, 100}, "light");
    const TextWindow dark = openGtkDialog({300, 400}, "dark");
    keepPicture("recognized-gtk-dialog");
    for (const TextWindow* dialog : {&light, &dark}) {
        expectRead(sentences, inOneLine(recognize(sentencesOf(*dialog, 65, 64))));
        expectWholeDialog(sentences, "Discard Save as...", recognize(dialog->area));
    }
}

TEST_F(RecognizedText, of_a_qt_dialog_light_and_dark) {
    start();
    const TextWindow light = openQtDialog({100, 100}, "light");
    const TextWindow dark = openQtDialog({300, 400}, "dark");
    keepPicture("recognized-qt-dialog");
    for (const TextWindow* dialog : {&light, &dark}) {
        const Area besideIcon = inside(dialog->area, 56, 0, 0, 43);
        expectRead(withCheckBox, inOneLine(recognize(besideIcon)));
        expectWholeDialog(withCheckBox, "Save Discard Cancel", recognize(dialog->area));
    }
}

/// A desktop on which a point is two pixels, for every toolkit.
class RecognizedTextAtScale2 : public RecognizedText {
  protected:
    RecognizedTextAtScale2()
        : RecognizedText({.outputs = {{.width = 1920, .height = 1200}},
                          .notifications = desktop::NotificationDaemon::recorder,
                          .environment = {{"QT_SCALE_FACTOR", "2"}, {"GDK_SCALE", "2"}}}) {}
};

TEST_F(RecognizedTextAtScale2, of_dialogs) {
    start();
    const TextWindow qt = openQtDialog({100, 60}, "light");
    const TextWindow gtk = openGtkDialog({300, 560}, "dark");
    keepPicture("recognized-at-scale-2");
    expectRead(sentences, inOneLine(recognize(sentencesOf(qt, 112, 155))));
    expectRead(sentences, inOneLine(recognize(sentencesOf(gtk, 130, 128))));
}

TEST_F(RecognizedTextAtScale2, of_terminals) {
    start();
    const TextWindow light = openVte("light", listing, {40, 40}, "#ffffff", "#202020");
    const TextWindow dark = openVte("dark", log, {400, 640}, "#1e2430", "#d7e3f4");
    keepPicture("recognized-terminals-at-scale-2");
    expectRead(listing, recognize(light.area));
    expectRead(log, recognize(dark.area));
}

TEST_F(RecognizedTextAtScale2, of_a_page_in_a_browser) {
    start();
    const TextWindow browser = openBrowser({40, 20});
    const Area light{browser.area.x + 20, browser.area.y + 96, 1400, 410};
    const Area dark{browser.area.x + 20, browser.area.y + 96 + 444, 1400, 410};
    waitForText(light, 140);
    waitForText(dark, 120);
    keepPicture("recognized-browser-at-scale-2");
    EXPECT_THAT(linesOf(recognize(light)), lightLines);
    EXPECT_THAT(linesOf(recognize(dark)), darkLines);
}

}  // namespace
}  // namespace journeys
