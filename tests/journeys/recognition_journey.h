#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "journeys/session.h"

namespace journeys {

namespace line {
inline constexpr const char* textCopied = "OCR complete! Text copied to clipboard.";
inline constexpr const char* textSaved = "OCR text saved to: ";
inline constexpr const char* textNotSaved = "Failed to save OCR text: ";
inline constexpr const char* textNotRecognized = "Unable to perform OCR: ";
}  // namespace line

/// The window of another program with text in it.
struct TextWindow {
    std::unique_ptr<desktop::Process> program;
    /// Its own area on the screen, decoration not counted, native pixels.
    Area area;
};

/// Journeys to the text of a region: other programs show text, and a drag takes it.
class RecognitionJourney : public testing::Test {
  protected:
    explicit RecognitionJourney(
        const desktop::DesktopOptions& options = {.notifications =
                                                      desktop::NotificationDaemon::recorder},
        desktop::Wallpaper::Motif motif = desktop::Wallpaper::Motif::gradient);

    void start(const nlohmann::json& settings = nlohmann::json::object(),
               const desktop::Environment& environment = {});

    /// Starts a program, moves its window to `place` and waits until its text of `characters`
    /// letters is there.
    TextWindow open(const std::string& name, const std::vector<std::string>& command, Place place,
                    std::size_t characters, const desktop::Environment& environment = {});
    /// Waits until the area shows `characters` letters and the screen has come to rest.
    void waitForText(const Area& area, std::size_t characters);
    /// `text` in an xterm without a cursor, in colours as X names them.
    TextWindow openTerminal(const std::string& text, Place place,
                            const std::string& background = "white",
                            const std::string& foreground = "black");
    /// A program that prints `text`, for the terminals that show it.
    std::string printingScript(const std::string& name, const std::string& text);

    /// Presses the shortcut, drags over the area and waits until the overlay has gone. Gives the
    /// place in the log before the release.
    std::size_t dragOver(const Area& area);
    /// As dragOver, and gives the text that the clipboard then offers.
    std::string recognize(const Area& area);
    std::string clipboardText();
    /// What the screen shows goes where people look at it.
    void keepPicture(const std::string& name);

    Session session;

  private:
    int printed_ = 0;
};

/// Some room taken off each side.
Area inside(const Area& area, int left, int top, int right, int bottom);

/// Expects that all of the text was read and nothing else, runs of blanks counted as one. With
/// `inexactLines` above 0 as many lines may have mistakes, of two characters each on average.
void expectRead(const std::string& truth, const std::string& reading, long inexactLines = 0);

std::vector<std::string> linesOf(const std::string& text);

}  // namespace journeys
