#include "desktop/x_server.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <fstream>
#include <set>
#include <stdexcept>

#include "desktop/touch_and_pen.h"
#include "desktop/x_client.h"

namespace desktop {
namespace {

std::string sizeText(const Output& output) {
    return std::to_string(output.width) + "x" + std::to_string(output.height);
}

/// Not the size alone: the server has modes of its own with such names.
std::string modeName(const Output& output) {
    return "test-" + sizeText(output);
}

/// Clock and sync positions with a fixed blanking. The dummy driver accepts any mode inside its
/// ranges; at this rate the clock of a 4K display is, too.
std::vector<std::string> modeTimings(const Output& output) {
    const int width = output.width;
    const int height = output.height;
    constexpr int refreshesPerSecond = 20;
    std::vector<std::string> timings{
        std::to_string((width + 160.0) * (height + 30.0) * refreshesPerSecond / 1e6)};
    for (const int number : {width, width + 16, width + 48, width + 160, height, height + 1,
                             height + 4, height + 30}) {
        timings.push_back(std::to_string(number));
    }
    return timings;
}

std::string modeLine(const Output& output) {
    std::string line = "  Modeline \"" + modeName(output) + "\"";
    for (const std::string& timing : modeTimings(output)) {
        line += " " + timing;
    }
    return line + "\n";
}

std::string dummyConfiguration(const Output& first, int depth) {
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
    text += modeLine(first);
    const std::string bits = std::to_string(depth);
    text +=
        "EndSection\nSection \"Screen\"\n  Identifier \"screen\"\n  Device \"dummy\"\n"
        "  Monitor \"monitor\"\n  DefaultDepth " +
        bits + "\n  SubSection \"Display\"\n    Depth " + bits + "\n    Modes \"" +
        modeName(first) + "\"\n";
    // The most that an arrangement may need; memory that is not used costs nothing.
    return text + "    Virtual 7680 4320\n  EndSubSection\nEndSection\n";
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

std::string outputName(const Output& output, std::size_t index) {
    return "DUMMY" + std::to_string(output.number.value_or(static_cast<int>(index)));
}

XServer::XServer(const std::filesystem::path& directory, const std::vector<Output>& outputs,
                 int depth, ServerKind kind)
    : directory_(directory) {
    const Output& first = outputs.front();
    if (kind == ServerKind::xwayland) {
        startXwayland(first);
    } else if (kind == ServerKind::x11 && outputs.size() == 1 && first.x == 0 && first.y == 0 &&
               !first.number) {
        startVirtual(first, depth);
    } else {
        startDummy(outputs, depth, kind);
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

void XServer::startVirtual(const Output& output, int depth) {
    // 96 dots per inch are what desktops have; Xvfb's own default is older.
    startAndRead(
        {"Xvfb", "-screen", "0", sizeText(output) + "x" + std::to_string(depth), "-dpi", "96"});
}

bool XServer::hasXwayland() {
    return ::access("/usr/bin/weston", X_OK) == 0 && ::access("/usr/bin/Xwayland", X_OK) == 0;
}

void XServer::startXwayland(const Output& output) {
    const auto runtime = directory_ / "runtime";
    process_ = std::make_unique<Process>(
        ProcessOptions{.command = {"weston", "--backend=headless-backend.so", "--xwayland",
                                   "--no-config", std::string("--socket=") + waylandDisplay,
                                   "--idle-time=0", "--width=" + std::to_string(output.width),
                                   "--height=" + std::to_string(output.height)},
                       .environment = {{"PATH", "/usr/bin:/bin"},
                                       {"HOME", directory_ / "others"},
                                       {"XDG_RUNTIME_DIR", runtime}},
                       .outputFile = directory_ / "x-server"});
    // Xwayland itself starts with its first client.
    const std::string announcement = "listening on display ";
    require("The start of a Wayland compositor with Xwayland", [&] {
        for (const std::string& line : process_->errorLines()) {
            const auto place = line.find(announcement);
            if (place != std::string::npos) {
                displayName_ = line.substr(place + announcement.size());
            }
        }
        if (!process_->isRunning()) {
            throw std::runtime_error("The Wayland compositor ended at its start.");
        }
        return !displayName_.empty();
    });
}

void XServer::startDummy(const std::vector<Output>& outputs, int depth, ServerKind kind) {
    const auto configuration = directory_ / "xorg.conf";
    std::ofstream(configuration) << dummyConfiguration(outputs.front(), depth)
                                 << (kind == ServerKind::x11WithTouchAndPen
                                         ? touchAndPenConfiguration(directory_)
                                         : "");
    startAndRead({"Xorg", "-config", configuration, "-logfile", directory_ / "xorg.log",
                  "-novtswitch", "-sharevts", "vt7", "-dpi", "96"});
    modes_ = {modeName(outputs.front())};
    offeredModes_ = {"DUMMY0 " + modeName(outputs.front())};
    outputsInUse_ = {"DUMMY0"};
    arrange(outputs);
    // Without input devices the server takes key codes of before evdev, which no desktop has.
    runToEnd({.command = {"setxkbmap", "-display", displayName_, "-rules", "evdev", "-model",
                          "pc105", "-layout", "us"},
              .environment = {{"PATH", "/usr/bin:/bin"}},
              .outputFile = directory_ / "setxkbmap"});
}

void XServer::offerMode(const Output& output, const std::string& name) {
    const std::string mode = modeName(output);
    if (modes_.insert(mode).second) {
        std::vector<std::string> command{"--newmode", mode};
        const auto timings = modeTimings(output);
        command.insert(command.end(), timings.begin(), timings.end());
        configure(command);
    }
    if (offeredModes_.insert(name + " " + mode).second) {
        configure({"--addmode", name, mode});
    }
}

void XServer::arrange(const std::vector<Output>& outputs, std::optional<std::size_t> primary) {
    // All at once: xrandr shifts every arrangement so that it begins at (0, 0).
    std::vector<std::string> arrangement;
    std::set<std::string> used;
    for (std::size_t index = 0; index < outputs.size(); ++index) {
        const Output& output = outputs[index];
        const std::string name = outputName(output, index);
        offerMode(output, name);
        arrangement.insert(arrangement.end(),
                           {"--output", name, "--mode", modeName(output), "--pos",
                            std::to_string(output.x) + "x" + std::to_string(output.y)});
        if (index == primary) {
            arrangement.emplace_back("--primary");
        }
        used.insert(name);
    }
    for (const std::string& name : outputsInUse_) {
        if (!used.contains(name)) {
            arrangement.insert(arrangement.end(), {"--output", name, "--off"});
        }
    }
    if (!primary) {
        arrangement.emplace_back("--noprimary");
    }
    outputsInUse_ = used;
    configure(arrangement);
}

void XServer::configure(const std::vector<std::string>& xrandrArguments) {
    std::vector<std::string> command{"xrandr", "--display", displayName_};
    command.insert(command.end(), xrandrArguments.begin(), xrandrArguments.end());
    runToEnd({.command = std::move(command), .outputFile = directory_ / "xrandr"});
}

}  // namespace desktop
