#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "latency/busy_desktop.h"
#include "latency/input_burst.h"
#include "latency/watch.h"

namespace latency {

/// A resident program with an overlay in which a region is dragged: ours, or a peer. Everything
/// that is measured is seen from outside, in the same way for each.
class Program {
  public:
    virtual ~Program() = default;
    [[nodiscard]] virtual std::string name() const = 0;
    /// Starts it and returns when its trigger works and no window of it is open. The time from its
    /// start until its trigger worked, in milliseconds, where it can be told from outside.
    virtual std::optional<double> start(BusyDesktop& desktop) = 0;
    virtual void stop() = 0;
    /// Whether it stays between two pictures.
    enum class Residence { none, resident };
    [[nodiscard]] virtual Residence residence() const = 0;
    /// What the overlay is opened for. A peer may need another trigger for an overlay that delivers
    /// its picture at the release than for one that does not.
    enum class Purpose { open, deliver };
    /// Sends the trigger; the moment before it left.
    virtual double trigger(InputBurst& input, Purpose purpose) = 0;
    /// When it had taken the keyboard and everything else was done, where it says so; the overlay
    /// counts as ready when it is mapped and this has come. To be asked after `trigger`.
    [[nodiscard]] virtual std::optional<double> readyAt() = 0;
    /// What else wakes the measurement up; null for nothing.
    [[nodiscard]] virtual Watch* watch() = 0;
    /// Whether the end of a drag saves the picture and copies it.
    enum class Delivery { none, atRelease };
    [[nodiscard]] virtual Delivery delivery() const = 0;
    [[nodiscard]] virtual pid_t process() const = 0;
};

}  // namespace latency
