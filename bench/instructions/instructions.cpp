// Runs fixed scenarios for callgrind, which counts their instructions: each once without being
// counted, so that what is made at its first use is there, then once counted.
// scripts/check-performance runs it and compares.
//
//   instructions                  every scenario; under callgrind it dumps the counts of each
#include <valgrind/callgrind.h>

#include <QGuiApplication>
#include <cstdio>
#include <vector>

#include "instructions/scenarios.h"

namespace {

void count(const bench::Scenario& scenario) {
    scenario.run();
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    scenario.run();
    CALLGRIND_DUMP_STATS_AT(scenario.name.c_str());
    CALLGRIND_STOP_INSTRUMENTATION;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    // Text is drawn without a desktop.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, arguments);
    for (const auto& scenarios : {bench::decisionScenarios(), bench::pictureScenarios()}) {
        for (const bench::Scenario& scenario : scenarios) {
            count(scenario);
            std::puts(scenario.name.c_str());
        }
    }
    return 0;
}
