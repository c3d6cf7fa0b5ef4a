// Measures, on a virtual desktop of its own, what a person waits for: the overlay, the first drag,
// the saved file, the pasted picture; and what a program costs while it waits. This program and its
// peers in turn. scripts/bench-latency builds and runs it and makes the table.
//
//   latency --lumaframe PROGRAM --content DIRECTORY --output FILE.json
//           [--rounds N] [--compositor none|picom|picom-fading] [--only NAME[,NAME...]]
//           [--idle yes|no] [--growth yes|no] [--peers-every ROUNDS]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "latency/growth_session.h"
#include "latency/idle_session.h"
#include "latency/lumaframe_program.h"
#include "latency/one_shot.h"
#include "latency/overlay_session.h"
#include "latency/peer_program.h"

namespace {

namespace fs = std::filesystem;
using latency::OverlaySession;

constexpr desktop::Output screen{.width = 3840, .height = 2160};
const latency::Drag region{"1280x800", {1400, 300}, {2679, 1099}};
/// In the page.
const latency::Drag text{"text", {150, 220}, {1200, 1200}};
constexpr desktop::Place insidePage{1000, 1200};
const latency::Drag whole{"3840x2160", {0, 0}, {3839, 2159}};
/// Long enough for everything that a program keeps for a while to be given back.
constexpr std::chrono::milliseconds idleTime{3000};

enum class Idle { ignored, measured };
enum class Growth { ignored, measured };

struct Arguments {
    fs::path lumaframe;
    fs::path content;
    fs::path output;
    int rounds = 20;
    /// The other programs take part in the first of so many rounds.
    int peersEvery = 1;
    desktop::Compositor compositor = desktop::Compositor::none;
    std::string only;
    Idle idle = Idle::ignored;
    Growth growth = Growth::ignored;

    [[nodiscard]] bool includes(const std::string& name) const {
        return only.empty() || ("," + only + ",").find("," + name + ",") != std::string::npos;
    }
};

Arguments parse(int count, char** values) {
    std::map<std::string, std::string> given;
    for (int index = 1; index + 1 < count; index += 2) {
        given[values[index]] = values[index + 1];
    }
    Arguments arguments{.lumaframe = given["--lumaframe"],
                        .content = given["--content"],
                        .output = given["--output"],
                        .only = given["--only"]};
    if (given.contains("--rounds")) {
        arguments.rounds = std::stoi(given["--rounds"]);
    }
    if (given.contains("--peers-every")) {
        arguments.peersEvery = std::max(1, std::stoi(given["--peers-every"]));
    }
    if (given["--compositor"] == "picom") {
        arguments.compositor = desktop::Compositor::picom;
    }
    if (given["--compositor"] == "picom-fading") {
        arguments.compositor = desktop::Compositor::picomFading;
    }
    if (given["--idle"] == "yes") {
        arguments.idle = Idle::measured;
    }
    if (given["--growth"] == "yes") {
        arguments.growth = Growth::measured;
    }
    return arguments;
}

/// One start of one program and everything that it is asked for.
void runRound(latency::Program& program, latency::BusyDesktop& desktop, OverlaySession& session,
              latency::Samples& samples) {
    if (const auto started = program.start(desktop)) {
        samples.add(program.name(), "start to hot keys", *started);
    }
    latency::rest(idleTime);
    if (session.open(program, "first")) {
        session.open(program, "warm");
        session.capture(program, region, OverlaySession::Motions::measured);
        session.capture(program, whole, OverlaySession::Motions::few);
    }
    if (auto* const ours = dynamic_cast<latency::LumaframeProgram*>(&program)) {
        session.captureWindow(*ours, insidePage);
    }
    program.stop();
}

/// Whether a program of this name is installed; says so otherwise.
bool isInstalled(const std::string& program, latency::Samples& samples) {
    const bool isThere = fs::exists("/usr/bin/" + program);
    if (!isThere) {
        samples.remark(program, "not installed");
        std::fprintf(stderr, "%s is not installed.\n", program.c_str());
    }
    return isThere;
}

std::vector<std::unique_ptr<latency::Program>> programsOf(const Arguments& arguments,
                                                          latency::Samples& samples) {
    std::vector<std::unique_ptr<latency::Program>> programs;
    if (arguments.includes("lumaframe")) {
        programs.push_back(std::make_unique<latency::LumaframeProgram>(arguments.lumaframe));
    }
    for (const latency::Peer& peer : latency::overlayPeers()) {
        if (arguments.includes(peer.name) && isInstalled(peer.name, samples)) {
            programs.push_back(std::make_unique<latency::PeerProgram>(peer));
        }
    }
    return programs;
}

std::vector<latency::OneShot> oneShotsOf(const Arguments& arguments, latency::Samples& samples) {
    std::vector<latency::OneShot> shots;
    for (const latency::OneShot& shot : latency::oneShots()) {
        if (arguments.includes(shot.program) && isInstalled(shot.whole.front(), samples)) {
            shots.push_back(shot);
        }
    }
    return shots;
}

/// What those cost that wait beside ours, started and never used.
void measureIdlePeers(const Arguments& arguments, latency::BusyDesktop& desktop,
                      latency::Samples& samples) {
    for (const latency::Peer& peer : latency::overlayPeers()) {
        latency::PeerProgram program(peer);
        if (arguments.includes(peer.name) &&
            program.residence() == latency::Program::Residence::resident &&
            isInstalled(peer.name, samples)) {
            program.start(desktop);
            latency::measureIdle(program, "fresh", samples);
            program.stop();
        }
    }
}

void measure(const Arguments& arguments, latency::Samples& samples) {
    latency::BusyDesktop desktop({.outputs = {screen},
                                  .compositor = arguments.compositor,
                                  .notifications = desktop::NotificationDaemon::dunst,
                                  .tray = desktop::Tray::host},
                                 arguments.content);
    OverlaySession session(desktop, samples);
    const auto programs = programsOf(arguments, samples);
    const auto shots = oneShotsOf(arguments, samples);
    for (int round = 1; round <= arguments.rounds; ++round) {
        std::fprintf(stderr, "Round %d of %d\n", round, arguments.rounds);
        const bool arePeersIn = (round - 1) % arguments.peersEvery == 0;
        for (const auto& program : programs) {
            if (arePeersIn || program->name() == "lumaframe") {
                runRound(*program, desktop, session, samples);
                desktop.requireWhole("a round of " + program->name());
            }
        }
        for (const latency::OneShot& shot : shots) {
            if (arePeersIn) {
                latency::measureOneShot(shot, desktop, samples);
                desktop.requireWhole("a command of " + shot.program);
            }
        }
    }
    if (arguments.idle == Idle::measured) {
        measureIdlePeers(arguments, desktop, samples);
    }
    if (arguments.idle == Idle::measured && arguments.includes("lumaframe")) {
        latency::LumaframeProgram lumaframe(arguments.lumaframe);
        latency::measureLife(lumaframe, desktop, session, whole, text, samples);
    }
}

}  // namespace

int main(int count, char** values) {
    const Arguments arguments = parse(count, values);
    latency::Samples samples;
    try {
        if (arguments.rounds > 0 || arguments.idle == Idle::measured) {
            measure(arguments, samples);
        }
        if (arguments.growth == Growth::measured && arguments.includes("lumaframe")) {
            latency::measureGrowth(arguments.lumaframe, arguments.compositor, samples);
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    auto figures = samples.json();
    figures["compositor"] = arguments.compositor != desktop::Compositor::none;
    std::ofstream(arguments.output) << figures.dump(1) << '\n';
    return 0;
}
