#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/display_layout.h"
#include "platform/x11/native_geometry.h"

namespace platform::x11 {

/// One entry of the server's list of monitors.
struct Monitor {
    std::uint32_t id = 0;
    std::string name;
    NativeRect native;
    DisplayRole role = DisplayRole::secondary;
    /// Its place in the server's list, by which colour profiles are numbered.
    std::size_t index = 0;
};

/// Reads the monitors by what the server offers: RandR 1.5 monitors, else its controllers, else the
/// screen as one. Main thread.
class MonitorReader {
  public:
    /// Asks for the server's version: one round trip.
    explicit MonitorReader(Connection& connection);

    [[nodiscard]] bool hasRandr() const { return support_ != Support::none; }
    /// Sends the question; `read` must follow exactly once.
    void ask();
    /// The monitors that show something, mirrored ones merged, in the server's order; what a
    /// monitor that somebody has defined claims beyond the screen is not there.
    [[nodiscard]] std::vector<Monitor> read();

  private:
    enum class Support { none, controllers, monitors };

    [[nodiscard]] std::vector<Monitor> readMonitors();
    [[nodiscard]] std::vector<Monitor> readControllers();
    /// Nothing when the server does not answer.
    [[nodiscard]] std::optional<NativeRect> readScreenSize();
    [[nodiscard]] const std::string& nameOf(xcb_atom_t atom);

    Connection& connection_;
    Support support_ = Support::none;
    /// Of the question that is under way.
    unsigned int sequence_ = 0;
    unsigned int screenSequence_ = 0;
    /// An atom keeps its name for as long as the server runs.
    std::map<xcb_atom_t, std::string> names_;
};

/// Joins monitors that show the same part of the screen, or a part of what another one shows.
std::vector<Monitor> mergeMirrored(std::vector<Monitor> monitors);

}  // namespace platform::x11
