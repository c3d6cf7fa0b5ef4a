#include "platform/select_platform.h"

#include <array>

#ifdef __APPLE__
#include "platform/macos/macos_platform.h"
#else
#include "platform/x11/x11_platform.h"
#endif

namespace platform {

#ifdef __APPLE__

namespace {

Probe probeMacos(const Session& /*session*/) {
    return {Rank::best, "every macOS session is a graphical one"};
}

}  // namespace

std::span<const System> compiledSystems() {
    static const std::array<System, 1> systems{{{"macOS", probeMacos, macos::createMacosPlatform}}};
    return systems;
}

#else

namespace {

Probe probeX11(const Session& session) {
    if (session.xDisplay.empty()) {
        return {Rank::unsupported, "$DISPLAY is not set"};
    }
    if (!session.waylandDisplay.empty()) {
        return {Rank::possible, "the X server " + session.xDisplay + " runs inside Wayland"};
    }
    return {Rank::best, "$DISPLAY names the X server " + session.xDisplay};
}

}  // namespace

std::span<const System> compiledSystems() {
    static const std::array<System, 1> systems{{{"X11", probeX11, x11::createX11Platform}}};
    return systems;
}

#endif

base::Result<System> selectPlatform(std::span<const System> systems, const Session& session) {
    const System* chosen = nullptr;
    Rank chosenRank = Rank::unsupported;
    std::string reasons;
    for (const System& system : systems) {
        const Probe probe = system.probe(session);
        reasons += (reasons.empty() ? "" : "; ") + system.name + ": " + probe.reason;
        if (probe.rank > chosenRank) {
            chosen = &system;
            chosenRank = probe.rank;
        }
    }
    if (chosen == nullptr) {
        return base::Error{
            base::ErrorKind::unavailable,
            "Lumaframe needs a graphical session, and there is none here (" + reasons + ")."};
    }
    return *chosen;
}

}  // namespace platform
