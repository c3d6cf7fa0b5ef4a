#include "soak/soak_figures.h"

#include <filesystem>
#include <iterator>
#include <sstream>

#include "desktop/x_resources.h"
#include "journeys/process_figures.h"

namespace soak {
namespace {

namespace fs = std::filesystem;

long entriesOf(const fs::path& directory) {
    return std::distance(fs::directory_iterator(directory), fs::directory_iterator());
}

/// Longer than a closed overlay's snapshot is kept, which is 250 ms.
constexpr std::chrono::milliseconds restTime{500};

void waitForRest(pid_t process) {
    desktop::require("The rest of the program", [process] {
        const auto before = journeys::activityOf(process);
        return desktop::staysTrue([&] { return journeys::activityOf(process) == before; },
                                  restTime) &&
               journeys::childOf(process, "lumaframe-sound") == 0;
    });
}

void addBusFigures(desktop::Desktop& desktop, Figures& figures) {
    std::istringstream lines(desktop.bus({"figures", "app.lumaframe.Lumaframe"}));
    for (std::string line; std::getline(lines, line);) {
        const auto space = line.rfind(' ');
        figures["bus " + line.substr(0, space)] = std::stol(line.substr(space));
    }
}

}  // namespace

Figures figuresOf(desktop::Desktop& desktop, const desktop::Process& program) {
    Figures figures;
    // First, since the questions wake the program.
    addBusFigures(desktop, figures);
    waitForRest(program.pid());
    const fs::path process = fs::path("/proc") / std::to_string(program.pid());
    figures[residentMemory] = journeys::residentMemory(program.pid());
    figures["descriptors"] = entriesOf(process / "fd");
    figures["children"] = static_cast<long>(journeys::childrenOf(program.pid()).size());
    figures["threads"] = entriesOf(process / "task");
    for (const auto& [kind, count] : desktop::resourcesOf(desktop.client(), program.pid())) {
        figures["X " + kind] += count;
    }
    return figures;
}

}  // namespace soak
