#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "desktop/desktop.h"
#include "desktop/pattern.h"
#include "journeys/left_on_disk.h"

namespace journeys {

using desktop::Area;
using desktop::Picture;
using desktop::Place;

/// Lines of the program's log that several journeys wait for.
namespace line {
inline constexpr const char* handlerInstalled = "✅ Event handler installed successfully";
inline constexpr const char* becameActive =
    "🔄 App became active - re-registering shortcuts to ensure they work";
inline constexpr const char* cursorRestored = "🎯 Cursor restored to arrow in close()";
inline constexpr const char* cursorSet = "🎯 Cursor set to crosshair in showSelection()";
inline constexpr const char* showSelectionCalled = "🔵 showSelection() called";
inline constexpr const char* toggled = "🔵 toggleWindowMode() called";
inline constexpr const char* regionCopied = "Retina screenshot copied!";
inline constexpr const char* windowCopied = "Window screenshot copied! ID: ";
inline constexpr const char* saved = "Screenshot saved to: ";
inline constexpr const char* notSaved = "Failed to save screenshot: ";
inline constexpr const char* mouseDown = "🖱️ SelectionView mouseDown at ";
}  // namespace line

/// Whether the settings window, which opens at every start, is closed before the journey begins.
enum class SettingsWindow { closed, leftOpen };

/// One person's session: a private desktop with a wallpaper, and the real program in it. At its end
/// the test fails when the program has left on the disk, or had there for a moment, what it may
/// not.
class Session {
  public:
    explicit Session(const desktop::DesktopOptions& options = {},
                     desktop::Wallpaper::Motif motif = desktop::Wallpaper::Motif::pattern);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] desktop::Desktop& desktop() { return desktop_; }
    [[nodiscard]] desktop::InputDriver& input() { return desktop_.input(); }
    [[nodiscard]] desktop::Process& program() { return *program_; }
    [[nodiscard]] desktop::Clipboard& clipboard() { return clipboard_; }
    [[nodiscard]] const Picture& wallpaper() const { return wallpaper_->picture(); }

    /// Rearranges the displays of a dummy server and hangs the wallpaper anew. The screen must be
    /// empty.
    void arrange(const std::vector<desktop::Output>& outputs,
                 std::optional<std::size_t> primary = 0);

    // Settings, as a text editor would see and change them.
    [[nodiscard]] std::filesystem::path settingsFile() const;
    [[nodiscard]] nlohmann::json readSettings() const;
    /// Replaces the file, in one step, by one with `values` and the flags of a program that has run
    /// before.
    void writeSettings(nlohmann::json values);

    /// Takes another copy of the program than the one of the build tree.
    void useProgram(const std::filesystem::path& path) { executable_ = path; }
    /// Starts the program and waits until it has registered its shortcuts for the last time.
    void start(SettingsWindow window = SettingsWindow::closed,
               const desktop::Environment& environment = {}, std::function<void()> beforeExec = {});
    /// Starts the program and waits for nothing.
    void startWithoutWaiting(const desktop::Environment& environment = {},
                             std::function<void()> beforeExec = {});
    /// Starts a second process of the program in the same places.
    [[nodiscard]] std::unique_ptr<desktop::Process> startSecond();
    /// To be told what the test itself makes in the home while the program runs.
    [[nodiscard]] LeftOnDisk& leftOnDisk() { return leftOnDisk_; }
    /// The mapped windows of the program's window with this role, as the window manager lists them.
    [[nodiscard]] std::optional<xcb_window_t> windowWithRole(const std::string& part);
    void closeWindow(xcb_window_t window);
    [[nodiscard]] xcb_window_t activeWindow();

    // The overlay.
    void pressScreenshotShortcut();
    void pressRecognitionShortcut();
    /// Presses the screenshot shortcut and waits until the overlay covers every display.
    void openOverlay();
    /// The same with the shortcut for text recognition.
    void openRecognitionOverlay();
    /// Presses Escape until the overlay has gone: its windows are there a moment before it takes
    /// the keyboard.
    void cancelOverlay();
    void waitUntilOpen();
    /// Waits until no window of an overlay is left on the screen.
    void waitUntilClosed();
    [[nodiscard]] bool isOpen();
    [[nodiscard]] std::size_t overlayWindows();
    /// Where the windows of the overlay lie, sorted.
    [[nodiscard]] std::vector<Area> overlayAreas();

    // The log.
    [[nodiscard]] std::size_t mark() const { return program_->outputLines().size(); }
    [[nodiscard]] std::vector<std::string> linesSince(std::size_t mark) const;
    /// How many lines since `mark` begin with `prefix`.
    [[nodiscard]] std::size_t countSince(std::size_t mark, const std::string& prefix) const;
    /// As desktop::require, with the program's log in the message when it does not happen.
    void require(const std::string& what, const std::function<bool()>& condition) const;
    /// Waits for a line that begins with `prefix` and gives what follows it.
    std::string waitForLine(const std::string& prefix, std::size_t mark);

    // What comes out.
    [[nodiscard]] std::vector<std::filesystem::path> downloads() const;
    /// The picture that the clipboard offers as image/png.
    desktop::Png clipboardPicture();
    [[nodiscard]] Picture screen(const Area& area);
    /// Waits until the screen has not changed for a while: window managers repaint decorations some
    /// time after the focus has moved. The film of the permissions window, which never rests, does
    /// not count.
    void waitUntilStill();
    /// Where the permissions window, which is open, shows its film.
    [[nodiscard]] Area filmArea(int scale = 1);
    /// Where the journeys keep the pictures that people should look at.
    static std::filesystem::path pictureFile(const std::string& name);

  private:
    void waitForRegistrations();
    Picture screenWithoutFilm();

    std::filesystem::path executable_;
    desktop::DesktopOptions options_;
    desktop::Desktop desktop_;
    desktop::Wallpaper::Motif motif_;
    std::optional<desktop::Wallpaper> wallpaper_;
    desktop::Clipboard clipboard_;
    LeftOnDisk leftOnDisk_;
    std::unique_ptr<desktop::Process> program_;
};

}  // namespace journeys
