#pragma once

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

namespace latency {

/// Every figure that was taken: program, quantity, values in their order.
class Samples {
  public:
    void add(const std::string& program, const std::string& quantity, double value);
    /// Nothing is added when one of the two did not happen.
    void addSpan(const std::string& program, const std::string& quantity,
                 std::optional<double> from, std::optional<double> to);
    /// Something did not work; said once beside the figures.
    void remark(const std::string& program, const std::string& sentence);

    [[nodiscard]] nlohmann::json json() const;

  private:
    std::map<std::string, std::map<std::string, std::vector<double>>> values_;
    std::map<std::string, std::vector<std::string>> remarks_;
};

}  // namespace latency
