#pragma once

#include <string>

namespace platform {

/// What the environment says about the session that this process was started in.
struct Session {
    /// $DISPLAY, empty without an X server.
    std::string xDisplay;
    /// $WAYLAND_DISPLAY, empty without a Wayland compositor.
    std::string waylandDisplay;
    /// Whether there is a session bus to connect to; without one nothing tries, since the bus
    /// library would start a bus of its own that nobody else is on.
    bool hasSessionBus = false;
    /// Whether the session bus started this process, to give it a message.
    bool isStartedByBus = false;

    static Session fromEnvironment();
};

/// Prepares the environment for the libraries and for what this process starts: the marks of a
/// start by the bus and directories that are none are taken out, and without a session bus that
/// answers its address is set to one that is refused at once. A pipe whose reader leaves, the log's
/// or another, is an error of the write and no longer the end of the process. Before other threads
/// exist.
void settleEnvironment(const Session& session);

}  // namespace platform
