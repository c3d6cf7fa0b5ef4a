#include "latency/busy_desktop.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace latency {

namespace {

/// A listing in fourteen colours.
constexpr const char* listing =
    R"(for f in 1 2; do for i in $(seq 31 37) $(seq 91 97); do
printf "\e[${i}m%-14s\e[0m drwxr-xr-x 2 user user %5d Jan %2d 12:%02d file_%03d.cpp \e[1;${i}mmain\e[0m\n" \
"item-$i" $((i*37)) $((i%28+1)) $((i%60)) $i; done; done; exec sleep 100000)";
constexpr const char* program =
    R"(sed -n 30,120p /usr/include/stdio.h | sed -e 's/extern/\x1b[34mextern\x1b[0m/; s/int/\x1b[32mint\x1b[0m/g'
exec sleep 100000)";
constexpr const char* files = "ls -la --color=always /usr/bin | head -120; exec sleep 100000";

constexpr auto settling = std::chrono::milliseconds(1500);

/// The keys that close an overlay may reach the page when the overlay has just gone: it must not
/// close for them.
void ignoreClosingKeys(const std::filesystem::path& home) {
    const auto settings = home / ".config/feh";
    std::filesystem::create_directories(settings);
    std::ofstream(settings / "keys") << "quit\nclose\n";
}

}  // namespace

BusyDesktop::BusyDesktop(desktop::DesktopOptions options, const std::filesystem::path& content)
    : compositor_(options.compositor), desktop_(options) {
    if (!content.empty()) {
        openWindows(content);
    }
}

void BusyDesktop::keep(std::unique_ptr<desktop::Process> started) {
    programs_.push_back(std::move(started));
}

void BusyDesktop::requireWhole(const std::string& after) const {
    const bool isWhole =
        std::ranges::all_of(programs_, [](const auto& started) { return started->isRunning(); });
    if (!isWhole) {
        throw std::runtime_error("A window of the desktop is gone after " + after +
                                 ": the programs would not show the same things any more.");
    }
}

void BusyDesktop::openWindows(const std::filesystem::path& content) {
    ignoreClosingKeys(desktop_.home());
    desktop::runToEnd({.command = {"feh", "--no-fehbg", "--bg-fill", content / "wallpaper.jpg"},
                       .environment = desktop_.environment(),
                       .outputFile = desktop_.directory() / "wallpaper"});
    keep(desktop_.start(
        "page", {"feh", "--geometry", "1800x1500+120+80", "--zoom", "100", content / "page.png"}));
    openTerminal("terminal-1",
                 {"-fa", "DejaVu Sans Mono", "-fs", "14", "-bg", "#1e1e2e", "-fg", "#cdd6f4",
                  "-geometry", "110x34+2050+120"},
                 listing);
    openTerminal("terminal-2",
                 {"-fa", "DejaVu Sans Mono", "-fs", "12", "-bg", "white", "-fg", "black",
                  "-geometry", "120x46+2300+950"},
                 program);
    openTerminal("terminal-3",
                 {"-fa", "DejaVu Sans Mono", "-fs", "11", "-bg", "black", "-fg", "#33ff66",
                  "-geometry", "100x30+700+1580"},
                 files);
    constexpr std::size_t windows = 4;
    desktop::require("The windows of the desktop", [this] {
        const auto list = desktop_.client().property(desktop_.client().root(), "_NET_CLIENT_LIST");
        return list && list->size() >= windows * 4;
    });
    // What programs still do after their window is up tells nobody.
    desktop::staysTrue([] { return true; }, settling);
}

void BusyDesktop::openTerminal(const std::string& name, const std::vector<std::string>& look,
                               const std::string& command) {
    std::vector<std::string> all{"xterm"};
    all.insert(all.end(), look.begin(), look.end());
    all.insert(all.end(), {"-e", "bash", "-c", command});
    keep(desktop_.start(name, std::move(all)));
}

pid_t BusyDesktop::compositorProcess() {
    return compositor_ == desktop::Compositor::none ? 0 : desktop_.compositor().pid();
}

pid_t BusyDesktop::serverProcess() {
    return desktop_.server().processId();
}

}  // namespace latency
