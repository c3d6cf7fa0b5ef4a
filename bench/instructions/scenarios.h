#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// Something that always does the same work.
struct Scenario {
    std::string name;
    std::function<void()> run;
};

/// What a drag, a hovering pointer, a key and a changed setting cost in this process.
std::vector<Scenario> decisionScenarios();
/// Pictures written, analysed and shaded. Needs a `QGuiApplication`.
std::vector<Scenario> pictureScenarios();

}  // namespace bench
