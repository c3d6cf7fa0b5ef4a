// The demonstration: the real program on a desktop of its own, driven by real keys and a real drag.
//
//   lumaframe_demo PROGRAM OUTPUT_DIRECTORY
#include <algorithm>
#include <fstream>
#include <iostream>
#include <set>
#include <stdexcept>

#include "demo/scene.h"
#include "desktop/desktop.h"

namespace {

namespace fs = std::filesystem;
using desktop::Desktop;
using desktop::Place;
namespace key = desktop::key;

/// One run of the demonstration. Throws std::runtime_error at the first step that does not happen.
class Demonstration {
  public:
    Demonstration(fs::path program, fs::path output)
        : program_(std::move(program)),
          output_(std::move(output)),
          desktop_({.compositor = desktop::Compositor::picom,
                    .notifications = desktop::NotificationDaemon::dunst,
                    .tray = desktop::Tray::host}),
          scene_(desktop_) {}

    void run();
    /// Copies what the program has printed so far.
    void keepLog() const;

  private:
    void startProgram();
    void captureRegion();
    void captureWindow();
    void recognizeText();
    void showWindows();
    void quit();

    void showWindow(const std::string& role, const std::string& pictureName);
    void clickTrayMenu(const std::string& label);
    void openOverlay(std::uint8_t digit);
    void drag(Place from, Place to, const std::string& midDragPicture);
    std::string waitForAnyLine(const std::set<std::string>& beginnings);
    void keepPicture(const std::string& name, const desktop::Picture& picture) const;
    void keepNewestFile(const std::string& printedLine, const std::string& name) const;
    void compareClipboard(const std::string& name) const;
    void say(const std::string& sentence) const { std::cout << "  " << sentence << std::endl; }

    fs::path program_;
    fs::path output_;
    Desktop desktop_;
    demo::Scene scene_;
    std::unique_ptr<desktop::Process> lumaframe_;
    /// How many of the printed lines have been waited for.
    std::size_t linesSeen_ = 0;
};

constexpr Place regionStart{60, 80};
constexpr Place regionEnd{720, 400};
/// The text of the notes, without the window's decoration.
constexpr Place textStart{93, 134};
constexpr Place textEnd{730, 345};
constexpr Place insideNotes{300, 250};

void Demonstration::run() {
    keepPicture("desktop.png", demo::readSettledScreen(desktop_.client()));
    startProgram();
    captureRegion();
    captureWindow();
    recognizeText();
    showWindows();
    quit();
}

void Demonstration::startProgram() {
    const fs::path settings = desktop_.home() / ".config/lumaframe";
    fs::create_directories(settings);
    std::ofstream(settings / "settings.json")
        << R"({"showNotifications": true, "saveOCRToDownloads": true})" << '\n';
    lumaframe_ = desktop_.start("lumaframe", {program_});
    waitForAnyLine({"✅ Event handler installed successfully"});
    showWindow("main", "settings-window.png");
    // The shortcuts are registered several times around the start; a press between giving a
    // shortcut back and taking it again would go elsewhere.
    desktop::require("The end of the registrations", [this] {
        return desktop::staysTrue(
            [this, before = lumaframe_->outputLines().size()] {
                return lumaframe_->outputLines().size() == before;
            },
            std::chrono::milliseconds(1000));
    });
    demo::closeWindow(desktop_.client(), demo::windowWithRole(desktop_.client(), "main"));
    say("Lumaframe runs, has shown its settings window and registered its shortcuts.");
}

void Demonstration::captureRegion() {
    openOverlay(key::digit1);
    drag(regionStart, regionEnd, "overlay.png");
    keepNewestFile(waitForAnyLine({"Screenshot saved to: ", "Failed to save screenshot: "}),
                   "screenshot.png");
    say("Super+Shift+1 and a drag: saved as a file.");
    compareClipboard("screenshot.png");
    const auto notificationIsShown = [this, before = desktop_.client().mappedTopLevels().size()] {
        return desktop_.client().mappedTopLevels().size() > before;
    };
    desktop::waitUntil(notificationIsShown, std::chrono::seconds(2));
    keepPicture("after-the-screenshot.png", demo::readSettledScreen(desktop_.client()));
}

void Demonstration::captureWindow() {
    scene_.activateNotes(insideNotes);
    openOverlay(key::digit1);
    desktop_.input().tap(key::space);
    waitForAnyLine({"🔵 toggleWindowMode() called"});
    desktop_.input().moveInSteps({insideNotes.x + 40, insideNotes.y + 40}, insideNotes);
    // The list of windows is asked for when window mode begins, and comes a little later.
    const auto pixel = [this] {
        return desktop::readScreen(desktop_.client(), insideNotes.x, insideNotes.y, 1, 1);
    };
    desktop::require("The highlight of the window", [&] {
        const desktop::Picture shown = pixel();
        return (shown.at(0, 0) & 0xff) > (shown.at(0, 0) >> 16 & 0xff);
    });
    keepPicture("overlay-window-mode.png", demo::readSettledScreen(desktop_.client()));
    desktop_.input().click(insideNotes);
    waitForAnyLine({"Window screenshot copied! ID: "});
    keepNewestFile(waitForAnyLine({"Screenshot saved to: ", "Failed to save screenshot: "}),
                   "window.png");
    say("Super+Shift+1, Space and a click on a window: saved as a file.");
}

void Demonstration::recognizeText() {
    openOverlay(key::digit2);
    drag(textStart, textEnd, "overlay-text-recognition.png");
    keepNewestFile(waitForAnyLine({"Screenshot saved to: ", "Failed to save screenshot: "}),
                   "recognized.png");
    keepNewestFile(waitForAnyLine({"OCR text saved to: ", "Failed to save OCR text: ",
                                   "Unable to perform OCR: "}),
                   "recognized.txt");
    say("Super+Shift+2 and a drag: the picture and its text are saved as files. The text:");
    std::ifstream text(output_ / "recognized.txt");
    for (std::string line; std::getline(text, line);) {
        say("    | " + line);
    }
}

void Demonstration::showWindows() {
    const auto second = desktop_.start("second-start", {program_});
    if (second->waitForExit() != 0) {
        throw std::runtime_error("A second start did not end with status 0.");
    }
    showWindow("main", "settings-window.png");
    clickTrayMenu("Settings...");
    showWindow("permissions", "permissions-window.png");
    say("A second start showed the settings window, the tray menu the permissions window.");
}

void Demonstration::showWindow(const std::string& role, const std::string& pictureName) {
    desktop::require("The opening of the window \"" + role + "\"", [&] {
        return demo::windowWithRole(desktop_.client(), role) != XCB_WINDOW_NONE;
    });
    const auto window = demo::windowWithRole(desktop_.client(), role);
    if (role == "permissions") {
        // Its film never rests.
        keepPicture(pictureName, demo::readWindowDuringDrag(desktop_.client(), window, 1));
        return;
    }
    demo::readSettledScreen(desktop_.client());
    keepPicture(pictureName, demo::readWindow(desktop_.client(), window));
}

void Demonstration::clickTrayMenu(const std::string& label) {
    const std::string item = desktop_.trayItems().at(0);
    desktop_.bus({"menu-click", item.substr(0, item.find(' ')), label});
}

void Demonstration::quit() {
    clickTrayMenu("Quit Lumaframe");
    if (lumaframe_->waitForExit() != 0) {
        throw std::runtime_error("Lumaframe did not end with status 0 after Quit.");
    }
    say("Lumaframe quit from its tray menu.");
}

void Demonstration::openOverlay(std::uint8_t digit) {
    desktop_.input().chord({key::leftSuper, key::leftShift, digit});
    waitForAnyLine({"🎯 Cursor set to crosshair in showSelection()"});
    const auto& screen = desktop_.client().screen();
    desktop::require("The opening of the overlay", [&] {
        return !desktop_.client()
                    .mappedOverlays(0, 0, screen.width_in_pixels, screen.height_in_pixels)
                    .empty();
    });
}

void Demonstration::drag(Place from, Place to, const std::string& midDragPicture) {
    const auto corner = [this] { return desktop::readScreen(desktop_.client(), 0, 0, 1, 1); };
    const desktop::Picture undimmed = corner();
    desktop_.input().moveTo(from);
    desktop_.input().pressButton();
    desktop_.input().moveInSteps(from, to);
    desktop::require("The dimming of the screen", [&] { return corner() != undimmed; });
    keepPicture(midDragPicture, demo::readSettledScreen(desktop_.client()));
    desktop_.input().releaseButton();
}

std::string Demonstration::waitForAnyLine(const std::set<std::string>& beginnings) {
    std::string found;
    desktop::require("A line that begins with \"" + *beginnings.begin() + "\"", [&] {
        const bool hasEnded = !lumaframe_->isRunning();
        const auto lines = lumaframe_->outputLines();
        for (; linesSeen_ < lines.size() && found.empty(); ++linesSeen_) {
            const auto& line = lines[linesSeen_];
            if (std::ranges::any_of(beginnings, [&](auto& b) { return line.starts_with(b); })) {
                found = line;
            }
        }
        if (hasEnded && found.empty()) {
            throw std::runtime_error("Lumaframe ended by itself; log.txt has what it printed.");
        }
        return !found.empty();
    });
    return found;
}

void Demonstration::keepPicture(const std::string& name, const desktop::Picture& picture) const {
    desktop::writePng(output_ / name, picture);
}

void Demonstration::keepNewestFile(const std::string& printedLine, const std::string& name) const {
    const std::string mark = " saved to: ";
    const auto place = printedLine.find(mark);
    if (place == std::string::npos) {
        throw std::runtime_error("Lumaframe said: " + printedLine);
    }
    fs::copy_file(printedLine.substr(place + mark.size()), output_ / name,
                  fs::copy_options::overwrite_existing);
}

void Demonstration::compareClipboard(const std::string& name) const {
    const auto pasted = desktop::Clipboard(desktop_.displayName()).read("image/png");
    if (!pasted || *pasted != desktop::readFile(output_ / name)) {
        throw std::runtime_error("The clipboard does not hold the saved picture.");
    }
    say("The clipboard holds the same " + std::to_string(pasted->size()) + " bytes.");
}

void Demonstration::keepLog() const {
    std::ofstream log(output_ / "log.txt");
    if (!lumaframe_) {
        return;
    }
    for (const auto& line : lumaframe_->outputLines()) {
        log << line << '\n';
    }
    for (const auto& line : lumaframe_->errorLines()) {
        log << "(standard error) " << line << '\n';
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "Usage: lumaframe_demo PROGRAM OUTPUT_DIRECTORY\n";
        return 2;
    }
    const fs::path output = argv[2];
    try {
        fs::create_directories(output);
        Demonstration demonstration(argv[1], output);
        try {
            demonstration.run();
        } catch (const std::exception&) {
            demonstration.keepLog();
            throw;
        }
        demonstration.keepLog();
    } catch (const std::exception& error) {
        std::cerr << "The demonstration stopped: " << error.what() << '\n'
                  << "What it has left so far is in " << output.string() << ".\n";
        return 1;
    }
    return 0;
}
