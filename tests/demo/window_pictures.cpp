// Pictures of the program's windows as light and dark desktops show them, at scale 1 and 2.
//
//   lumaframe_window_pictures PROGRAM OUTPUT_DIRECTORY
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "demo/scene.h"
#include "desktop/desktop.h"

namespace {

namespace fs = std::filesystem;

enum class Colors { light, dark };

/// The colour scheme of a dark Plasma desktop, which the toolkit reads from the desktop's settings.
constexpr const char* darkScheme = R"([General]
ColorScheme=BreezeDark

[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252

[Colors:View]
BackgroundNormal=27,30,32
ForegroundNormal=252,252,252

[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252

[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252

[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
)";

desktop::Environment environmentFor(Colors colors, int scale, const desktop::Desktop& desktop) {
    desktop::Environment environment{{"QT_SCALE_FACTOR", std::to_string(scale)}};
    if (colors == Colors::dark) {
        std::ofstream(desktop.home() / ".config/kdeglobals") << darkScheme;
        environment["XDG_CURRENT_DESKTOP"] = "KDE";
        environment["KDE_SESSION_VERSION"] = "5";
        environment["KDE_FULL_SESSION"] = "true";
    }
    return environment;
}

void keepWindow(desktop::Desktop& desktop, const std::string& role, const fs::path& file) {
    const auto window = demo::windowWithRole(desktop.client(), role.c_str());
    desktop::writePng(file, demo::readWindow(desktop.client(), window));
    std::cout << "  " << file.filename().string() << std::endl;
}

void takePictures(const std::string& program, const fs::path& output, Colors colors, int scale) {
    desktop::Desktop desktop({.outputs = {{.width = 1000, .height = 1500}}});
    const auto lumaframe =
        desktop.start("lumaframe", {program}, environmentFor(colors, scale, desktop));
    desktop::require("The opening of the settings window", [&] {
        return demo::windowWithRole(desktop.client(), "main") != XCB_WINDOW_NONE;
    });
    // Away from the controls, which would show it.
    desktop.input().moveTo({990, 1490});
    demo::readSettledScreen(desktop.client());
    const std::string variant = std::string(colors == Colors::dark ? "-dark" : "-light") +
                                (scale == 1 ? "" : "@" + std::to_string(scale) + "x") + ".png";
    keepWindow(desktop, "main", output / ("settings" + variant));
    // The command "Settings..." of every window, with something to show.
    fs::remove(desktop.home() / "Downloads");
    desktop.input().chord({desktop::key::leftControl, desktop::key::comma});
    desktop::require("The opening of the permissions window", [&] {
        return demo::windowWithRole(desktop.client(), "permissions") != XCB_WINDOW_NONE;
    });
    const std::string name = "permissions" + variant;
    const auto window = demo::windowWithRole(desktop.client(), "permissions");
    desktop::writePng(output / name, demo::readWindowDuringDrag(desktop.client(), window, scale));
    std::cout << "  " << name << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "Usage: lumaframe_window_pictures PROGRAM OUTPUT_DIRECTORY\n";
        return 2;
    }
    try {
        fs::create_directories(argv[2]);
        for (const Colors colors : {Colors::light, Colors::dark}) {
            for (const int scale : {1, 2}) {
                takePictures(argv[1], argv[2], colors, scale);
            }
        }
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
