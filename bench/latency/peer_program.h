#pragma once

#include <memory>
#include <string>
#include <vector>

#include "latency/bus_trigger.h"
#include "latency/program.h"

namespace latency {

/// How another screenshot program is used. `{folder}` in a command stands for the Downloads folder.
struct Peer {
    enum class Trigger {
        /// The command, whose start is part of what a person waits for.
        command,
        /// A click in the menu of its tray icon, as its resident part offers it.
        trayMenu,
        /// A D-Bus call, as its desktop's shortcut makes it.
        bus,
    };
    std::string name;
    /// What stays resident; empty for nothing.
    std::vector<std::string> resident{};
    /// The bus name by which it says that it is ready.
    std::string busName{};
    Trigger opening = Trigger::command;
    /// The menu item's label, or the method on the object "/".
    std::string opens{};
    /// Opens the overlay; the one that saves and copies at the release when it delivers.
    std::vector<std::string> command{};
    Program::Delivery delivery = Program::Delivery::none;
};

/// A peer with an overlay. Its overlay counts as ready when it is mapped, which favours it.
class PeerProgram final : public Program {
  public:
    explicit PeerProgram(Peer peer) : peer_(std::move(peer)) {}

    [[nodiscard]] std::string name() const override { return peer_.name; }
    std::optional<double> start(BusyDesktop& desktop) override;
    void stop() override;
    [[nodiscard]] Residence residence() const override {
        return peer_.resident.empty() ? Residence::none : Residence::resident;
    }
    double trigger(InputBurst& input, Purpose purpose) override;
    [[nodiscard]] std::optional<double> readyAt() override { return triggeredAt_; }
    [[nodiscard]] Watch* watch() override { return nullptr; }
    [[nodiscard]] Delivery delivery() const override { return peer_.delivery; }
    /// The one that shows the overlay.
    [[nodiscard]] pid_t process() const override;

  private:
    void startResident();
    double runCommand();
    [[nodiscard]] std::string trayItem() const;

    Peer peer_;
    BusyDesktop* desktop_ = nullptr;
    std::unique_ptr<BusTrigger> bus_;
    std::unique_ptr<desktop::Process> resident_;
    std::unique_ptr<desktop::Process> command_;
    double triggeredAt_ = 0;
};

/// Those that are known here and have an overlay.
std::vector<Peer> overlayPeers();

}  // namespace latency
