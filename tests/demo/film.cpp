// The film of the permissions window: the real program on a desktop of its own, picture by picture.
//
//   lumaframe_film PROGRAM OUTPUT_DIRECTORY
#include <QGuiApplication>
#include <algorithm>
#include <iostream>
#include <stdexcept>

#include "demo/film_camera.h"
#include "demo/film_set.h"
#include "demo/scene.h"

namespace {

namespace fs = std::filesystem;
namespace key = desktop::key;
using demo::FilmCaption;
using demo::FilmSet;
using desktop::Area;
using desktop::Place;

constexpr std::uint32_t keysymV = 0x76;
/// Between the windows and the caption, where the pointer hides nothing.
constexpr Place rest{607, 560};

Place middleOf(const Area& area) {
    return {area.x + area.width / 2, area.y + area.height / 2};
}

class Film {
  public:
    Film(const fs::path& program, const fs::path& output)
        : desktop_({.outputs = {{.width = 1280, .height = 720}},
                    .environment = {{"XCURSOR_THEME", "Adwaita"},
                                    {"XCURSOR_SIZE", "64"},
                                    // The window shows the film at a third of its size, and the
                                    // overlay's label has to be read there.
                                    {"QT_SCALE_FACTOR", "2.5"}},
                    .homeTemplate = LUMAFRAME_FILM_HOME}),
          set_(desktop_),
          lumaframe_(desktop_.start("lumaframe", {program})),
          camera_(desktop_, output, rest) {}

    void make();

  private:
    void closeSettings();
    void showRegion();
    void showWindowMode();
    void showText();
    /// Presses Super, Shift and `digit` one after the other; the overlay opens at the last.
    void openOverlay(std::uint8_t digit, const QString& name, const QString& text);
    void drag(Place from, Place to, int pictures);
    void await(const std::string& line);
    void done(const QString& text) { camera_.caption().show({}, text, FilmCaption::Mark::done); }

    desktop::Desktop desktop_;
    FilmSet set_;
    std::unique_ptr<desktop::Process> lumaframe_;
    demo::FilmCamera camera_;
    std::size_t linesSeen_ = 0;
};

void Film::make() {
    closeSettings();
    camera_.hold(6);
    showRegion();
    showWindowMode();
    showText();
    camera_.fadeToBeginning(14);
}

void Film::closeSettings() {
    await("✅ Event handler installed successfully");
    desktop::require("The opening of the settings window", [this] {
        return demo::windowWithRole(desktop_.client(), "main") != XCB_WINDOW_NONE;
    });
    // The shortcuts are registered several times around the start.
    desktop::require("The end of the registrations", [this] {
        return desktop::staysTrue(
            [this, before = lumaframe_->outputLines().size()] {
                return lumaframe_->outputLines().size() == before;
            },
            std::chrono::milliseconds(1000));
    });
    demo::closeWindow(desktop_.client(), demo::windowWithRole(desktop_.client(), "main"));
}

void Film::showRegion() {
    openOverlay(key::digit1, QStringLiteral("1"), QStringLiteral("takes a screenshot"));
    const Area& area = FilmSet::drawing;
    camera_.glide({area.x + 36, area.y + 28}, 16);
    camera_.caption().show({}, QStringLiteral("Drag around what you want"));
    drag({area.x + 36, area.y + 28}, {area.x + area.width - 40, area.y + area.height - 22}, 34);
    await("Screenshot saved to: ");
    done(QStringLiteral("On the clipboard, and in Downloads"));
    camera_.hold(24);
}

void Film::showWindowMode() {
    openOverlay(key::digit1, QStringLiteral("1"), QStringLiteral("again"));
    camera_.caption().show({QStringLiteral("Space")}, QStringLiteral("picks a whole window"));
    camera_.hold(5);
    desktop_.input().tap(key::space);
    camera_.caption().press(1);
    await("🔵 toggleWindowMode() called");
    camera_.hold(6);
    camera_.caption().press(0);
    const Area& editor = FilmSet::editor;
    camera_.glide({middleOf(editor).x, middleOf(editor).y + 40}, 22);
    camera_.hold(8);
    camera_.pressButton();
    camera_.hold(3);
    camera_.releaseButton();
    await("Screenshot saved to: ");
    done(QStringLiteral("The window, as a picture"));
    camera_.hold(20);
}

void Film::showText() {
    openOverlay(key::digit2, QStringLiteral("2"), QStringLiteral("reads text"));
    const Area& text = FilmSet::text;
    camera_.glide({text.x + 34, text.y + 14}, 18);
    camera_.caption().show({}, QStringLiteral("Drag around the text"));
    drag({text.x + 34, text.y + 14}, {text.x + text.width - 34, text.y + text.height - 12}, 28);
    await("OCR complete! Text copied to clipboard.");
    done(QStringLiteral("The text is on the clipboard"));
    camera_.glide(rest, 20);
    camera_.caption().show({QStringLiteral("Ctrl"), QStringLiteral("V")},
                           QStringLiteral("pastes it"));
    camera_.hold(6);
    camera_.caption().press(1);
    camera_.hold(3);
    camera_.caption().press(2);
    desktop_.input().chord({key::leftControl, desktop_.input().keyCodeOf(keysymV)});
    camera_.hold(6);
    camera_.caption().press(0);
    camera_.hold(24);
    camera_.caption().clear();
    camera_.hold(6);
}

void Film::openOverlay(std::uint8_t digit, const QString& name, const QString& text) {
    FilmCaption& caption = camera_.caption();
    caption.show({QStringLiteral("Super"), QStringLiteral("Shift"), name}, text);
    camera_.hold(6);
    for (const std::size_t count : {1U, 2U}) {
        caption.press(count);
        camera_.hold(3);
    }
    caption.press(3);
    desktop_.input().chord({key::leftSuper, key::leftShift, digit});
    await("🎯 Cursor set to crosshair in showSelection()");
    camera_.hold(6);
    caption.press(0);
    camera_.hold(3);
}

void Film::drag(Place from, Place to, int pictures) {
    camera_.glide(from, 1);
    camera_.pressButton();
    camera_.hold(3);
    camera_.glide(to, pictures);
    camera_.hold(8);
    camera_.releaseButton();
}

void Film::await(const std::string& line) {
    linesSeen_ = lumaframe_->waitForLine(line, linesSeen_) + 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "Usage: lumaframe_film PROGRAM OUTPUT_DIRECTORY\n";
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    try {
        fs::create_directories(argv[2]);
        Film(argv[1], argv[2]).make();
    } catch (const std::exception& error) {
        std::cerr << "The film stopped: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
