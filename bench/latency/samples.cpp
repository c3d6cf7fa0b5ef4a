#include "latency/samples.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace latency {

void Samples::add(const std::string& program, const std::string& quantity, double value) {
    values_[program][quantity].push_back(value);
}

void Samples::addSpan(const std::string& program, const std::string& quantity,
                      std::optional<double> from, std::optional<double> to) {
    if (from && to) {
        add(program, quantity, *to - *from);
    }
}

void Samples::remark(const std::string& program, const std::string& sentence) {
    auto& known = remarks_[program];
    if (std::find(known.begin(), known.end(), sentence) == known.end()) {
        known.push_back(sentence);
    }
}

nlohmann::json Samples::json() const {
    return {{"values", values_}, {"remarks", remarks_}};
}

}  // namespace latency
