#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/log.h"
#include "doubles/call_log.h"

namespace doubles {

/// Keeps the lines. In a call log: "log: <line>".
class FakeLog final : public base::Log, public Recorder {
  public:
    void line(std::string_view text) override {
        lines.emplace_back(text);
        record("log: " + lines.back());
    }

    std::vector<std::string> lines;
};

}  // namespace doubles
