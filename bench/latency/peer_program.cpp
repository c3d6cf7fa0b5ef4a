#include "latency/peer_program.h"

#include "latency/monotonic.h"

namespace latency {

namespace {

constexpr std::chrono::milliseconds startLimit{15000};
/// What a program still does after it is on the bus.
constexpr std::chrono::milliseconds settling{1500};

}  // namespace

std::optional<double> PeerProgram::start(BusyDesktop& desktop) {
    desktop_ = &desktop;
    bus_ = std::make_unique<BusTrigger>(desktop.get().environment().at("DBUS_SESSION_BUS_ADDRESS"));
    if (!peer_.resident.empty()) {
        startResident();
    }
    return std::nullopt;
}

void PeerProgram::startResident() {
    resident_ = desktop_->get().start("peer-" + peer_.name, peer_.resident);
    desktop::require(
        "The start of " + peer_.name, [this] { return bus_->isThere(peer_.busName); }, startLimit);
    rest(settling);
}

/// The name under which the toolkit of the peers offers a tray icon.
std::string PeerProgram::trayItem() const {
    return "org.kde.StatusNotifierItem-" + std::to_string(resident_->pid()) + "-1";
}

void PeerProgram::stop() {
    command_.reset();
    resident_.reset();
    bus_.reset();
}

double PeerProgram::runCommand() {
    std::vector<std::string> command = peer_.command;
    for (std::string& word : command) {
        if (word == "{folder}") {
            word = desktop_->downloads();
        }
    }
    command_.reset();
    const double at = now();
    command_ = desktop_->get().start("peer-command", std::move(command));
    return at;
}

double PeerProgram::trigger(InputBurst&, Purpose purpose) {
    const bool needsCommand = purpose == Purpose::deliver && peer_.delivery == Delivery::atRelease;
    const auto way = needsCommand ? Peer::Trigger::command : peer_.opening;
    switch (way) {
        case Peer::Trigger::command:
            triggeredAt_ = runCommand();
            break;
        case Peer::Trigger::trayMenu:
            command_.reset();
            triggeredAt_ = bus_->clickMenuItem(trayItem(), peer_.opens).value_or(now());
            break;
        case Peer::Trigger::bus:
            if (!bus_->isThere(peer_.busName)) {
                // It ends with a cancelled selection.
                startResident();
            }
            triggeredAt_ = bus_->call(peer_.busName, "/", peer_.busName, peer_.opens, 0);
            break;
    }
    return triggeredAt_;
}

pid_t PeerProgram::process() const {
    if (command_) {
        return command_->pid();
    }
    return resident_ ? resident_->pid() : 0;
}

std::vector<Peer> overlayPeers() {
    return {
        {.name = "flameshot",
         .resident = {"flameshot"},
         .busName = "org.flameshot.Flameshot",
         .opening = Peer::Trigger::trayMenu,
         .opens = "Take Screenshot",
         .command = {"flameshot", "gui", "--accept-on-select", "--clipboard", "--path", "{folder}"},
         .delivery = Program::Delivery::atRelease},
        {.name = "spectacle",
         .resident = {"spectacle", "--dbus"},
         .busName = "org.kde.Spectacle",
         .opening = Peer::Trigger::bus,
         .opens = "RectangularRegion"},
        {.name = "ksnip", .command = {"ksnip", "--rectarea"}},
    };
}

}  // namespace latency
