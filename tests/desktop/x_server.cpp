#include "desktop/x_server.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <stdexcept>

#include "desktop/x_client.h"

namespace desktop {
namespace {

std::string modeName(const Output& output) {
    return std::to_string(output.width) + "x" + std::to_string(output.height);
}

/// Sync positions with a fixed blanking: the dummy driver accepts any mode inside its ranges.
std::string modeLine(const Output& output) {
    const auto horizontal = std::to_string(output.width + 16) + " " +
                            std::to_string(output.width + 48) + " " +
                            std::to_string(output.width + 160);
    const auto vertical = std::to_string(output.height + 1) + " " +
                          std::to_string(output.height + 4) + " " +
                          std::to_string(output.height + 30);
    const double clock = (output.width + 160.0) * (output.height + 30.0) * 60 / 1e6;
    return "  Modeline \"" + modeName(output) + "\" " + std::to_string(clock) + " " +
           std::to_string(output.width) + " " + horizontal + " " + std::to_string(output.height) +
           " " + vertical + "\n";
}

std::string dummyConfiguration(const std::vector<Output>& outputs) {
    std::set<std::string> modeLines;
    int width = 0;
    int height = 0;
    for (const Output& output : outputs) {
        modeLines.insert(modeLine(output));
        width = std::max(width, output.x + output.width);
        height = std::max(height, output.y + output.height);
    }
    std::string text = R"(Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoAddGPU" "false"
  Option "DontVTSwitch" "true"
  Option "AllowMouseOpenFail" "true"
  Option "PciForceNone" "true"
EndSection
Section "Device"
  Identifier "dummy"
  Driver "dummy"
  VideoRam 256000
EndSection
Section "Monitor"
  Identifier "monitor"
  HorizSync 1.0-2000.0
  VertRefresh 1.0-200.0
)";
    for (const auto& line : modeLines) {
        text += line;
    }
    text +=
        "EndSection\nSection \"Screen\"\n  Identifier \"screen\"\n  Device \"dummy\"\n"
        "  Monitor \"monitor\"\n  DefaultDepth 24\n  SubSection \"Display\"\n    Depth 24\n";
    text += "    Modes \"" + modeName(outputs.front()) + "\"\n    Virtual " +
            std::to_string(width) + " " + std::to_string(height) + "\n";
    return text + "  EndSubSection\nEndSection\n";
}

/// The server writes "<number>\n" once it answers.
std::string readDisplayNumber(int descriptor, Process& server) {
    std::string number;
    require("The start of an X server", [&] {
        pollfd waiting{descriptor, POLLIN, 0};
        char letter = 0;
        while (::poll(&waiting, 1, 0) > 0 && ::read(descriptor, &letter, 1) == 1) {
            number += letter;
        }
        if (!server.isRunning()) {
            throw std::runtime_error("The X server ended at its start.");
        }
        return number.ends_with('\n');
    });
    number.pop_back();
    return number;
}

}  // namespace

XServer::XServer(const std::filesystem::path& directory, const std::vector<Output>& outputs)
    : directory_(directory) {
    if (outputs.size() == 1 && outputs.front().x == 0 && outputs.front().y == 0) {
        startVirtual(outputs.front());
    } else {
        startDummy(outputs);
    }
}

void XServer::startAndRead(std::vector<std::string> command) {
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("No pipe for the display number.");
    }
    command.insert(command.end(),
                   {"-displayfd", std::to_string(ends[1]), "-noreset", "-nolisten", "tcp"});
    // The server's own helpers (the keyboard compiler) are found through PATH.
    process_ = std::make_unique<Process>(ProcessOptions{.command = std::move(command),
                                                        .environment = {{"PATH", "/usr/bin:/bin"}},
                                                        .outputFile = directory_ / "x-server",
                                                        .keptDescriptor = ends[1]});
    ::close(ends[1]);
    try {
        displayName_ = ":" + readDisplayNumber(ends[0], *process_);
    } catch (...) {
        ::close(ends[0]);
        throw;
    }
    ::close(ends[0]);
}

void XServer::startVirtual(const Output& output) {
    // 96 dots per inch and a 24-bit screen are what desktops have; Xvfb's own defaults are older.
    startAndRead({"Xvfb", "-screen", "0", modeName(output) + "x24", "-dpi", "96"});
}

void XServer::startDummy(const std::vector<Output>& outputs) {
    const auto configuration = directory_ / "xorg.conf";
    std::ofstream(configuration) << dummyConfiguration(outputs);
    startAndRead({"Xorg", "-config", configuration, "-logfile", directory_ / "xorg.log",
                  "-novtswitch", "-sharevts", "vt7", "-dpi", "96"});
    // All at once: xrandr shifts every arrangement so that it begins at (0, 0).
    std::vector<std::string> arrangement;
    for (std::size_t index = 0; index < outputs.size(); ++index) {
        const Output& output = outputs[index];
        const std::string name = "DUMMY" + std::to_string(index);
        if (index > 0) {
            configure({"--addmode", name, modeName(output)});
        }
        arrangement.insert(arrangement.end(),
                           {"--output", name, "--mode", modeName(output), "--pos",
                            std::to_string(output.x) + "x" + std::to_string(output.y)});
        if (index == 0) {
            arrangement.emplace_back("--primary");
        }
    }
    configure(arrangement);
    // Without input devices the server takes key codes of before evdev, which no desktop has.
    runToEnd({.command = {"setxkbmap", "-display", displayName_, "-rules", "evdev", "-model",
                          "pc105", "-layout", "us"},
              .environment = {{"PATH", "/usr/bin:/bin"}},
              .outputFile = directory_ / "setxkbmap"});
}

void XServer::configure(const std::vector<std::string>& xrandrArguments) {
    std::vector<std::string> command{"xrandr", "--display", displayName_};
    command.insert(command.end(), xrandrArguments.begin(), xrandrArguments.end());
    runToEnd({.command = std::move(command), .outputFile = directory_ / "xrandr"});
}

}  // namespace desktop
