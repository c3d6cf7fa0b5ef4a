// The real program in a virtual desktop, used for a long time.
//
// LUMAFRAME_SOAK_ROUNDS: how many rounds, 500 without it. LUMAFRAME_SOAK_SEED: another order.
// LUMAFRAME_SOAK_REPORT: a file that the figures are written to, a table of Markdown.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "journeys/recognition_journey.h"
#include "soak/soak_figures.h"
#include "soak/soak_rounds.h"

namespace soak {
namespace {

constexpr const char* text = "Boats leave the harbour at seven";
/// From here on nothing is done for the first time.
constexpr std::size_t warmUpRounds = 100;
/// An allocator keeps some of what it was given back, not always the same.
constexpr long memoryTolerance = 1024;

std::size_t numberFrom(const char* variable, std::size_t otherwise) {
    const char* value = std::getenv(variable);
    return value == nullptr ? otherwise : std::stoul(value);
}

long valueOf(const Figures& figures, const std::string& name) {
    const auto found = figures.find(name);
    return found == figures.end() ? 0 : found->second;
}

class Soak : public journeys::RecognitionJourney {
  protected:
    Soak()
        : RecognitionJourney({.outputs = outputsAtTheStart(),
                              .notifications = desktop::NotificationDaemon::recorder},
                             desktop::Wallpaper::Motif::pattern) {
        const auto home = session.desktop().home();
        start(SoakRounds::prepare(home, home / "Downloads"));
        terminal = openTerminal(text, {60, 60});
        rounds = std::make_unique<SoakRounds>(
            session, terminal.area, text,
            static_cast<std::uint32_t>(numberFrom("LUMAFRAME_SOAK_SEED", 1)));
    }
    void run(std::size_t count) {
        for (std::size_t round = 0; round < count; ++round) {
            try {
                rounds->next();
            } catch (const std::exception& error) {
                throw std::runtime_error("Round " + std::to_string(done + 1) + ", " + error.what());
            }
            ++done;
        }
    }
    Figures rest() {
        rounds->bringToRest();
        Figures figures = figuresOf(session.desktop(), session.program());
        highestMemory = std::max(highestMemory, figures.at(residentMemory));
        return figures;
    }
    void report(const Figures& before, const Figures& after, std::chrono::seconds time) const {
        std::ofstream file;
        if (const char* path = std::getenv("LUMAFRAME_SOAK_REPORT")) {
            file.open(path);
        }
        std::ostream& out = file.is_open() ? file : std::cout;
        out << "| Rounds | " << done << " in " << time.count() << " s |\n|---|---|\n";
        for (const auto& [kind, count] : rounds->rounds()) {
            out << "| " << nameOf(kind) << " | " << count << " |\n";
        }
        out << "| pictures and texts due, and delivered once each | " << rounds->deliveries()
            << " |\n\n| | After round " << warmUpRounds << " | After round " << done
            << " |\n|---|---|---|\n";
        for (const auto& [name, value] : after) {
            out << "| " << name << " | " << valueOf(before, name) << " | " << value << " |\n";
        }
        out << "| highest resident KiB at rest | | " << highestMemory << " |\n";
    }

    journeys::TextWindow terminal;
    std::unique_ptr<SoakRounds> rounds;
    std::size_t done = 0;
    long highestMemory = 0;
};

TEST_F(Soak, nothing_is_lost_doubled_wrong_or_kept) {
    const std::size_t count = numberFrom("LUMAFRAME_SOAK_ROUNDS", 500);
    ASSERT_GT(count, warmUpRounds);
    const auto begin = std::chrono::steady_clock::now();
    run(warmUpRounds);
    const Figures before = rest();
    while (done < count) {
        run(std::min<std::size_t>(count - done, 500));
        const Figures now = rest();
        std::clog << done << " rounds: " << now.at(residentMemory) << " KiB\n";
    }
    const Figures after = rest();
    report(
        before, after,
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin));
    EXPECT_TRUE(session.program().isRunning());
    EXPECT_TRUE(session.program().errorLines().empty());
    EXPECT_LE(after.at(residentMemory), before.at(residentMemory) + memoryTolerance);
    for (const auto& [name, value] : after) {
        if (name != residentMemory) {
            EXPECT_LE(value, valueOf(before, name)) << name;
        }
    }
}

}  // namespace
}  // namespace soak
