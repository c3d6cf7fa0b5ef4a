#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace doubles {

/// What happened, over all fakes that write into it, in its order.
class CallLog {
  public:
    void add(std::string call) { calls_.push_back(std::move(call)); }
    void clear() { calls_.clear(); }
    [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }
    /// The calls that begin with one of `prefixes`, in their order.
    [[nodiscard]] std::vector<std::string> startingWith(
        const std::vector<std::string>& prefixes) const {
        std::vector<std::string> found;
        for (const std::string& call : calls_) {
            if (std::any_of(prefixes.begin(), prefixes.end(),
                            [&](const std::string& prefix) { return call.starts_with(prefix); })) {
                found.push_back(call);
            }
        }
        return found;
    }
    [[nodiscard]] long count(const std::string& call) const {
        return std::count(calls_.begin(), calls_.end(), call);
    }

  private:
    std::vector<std::string> calls_;
};

/// A fake that can write its calls into a log it shares with others.
class Recorder {
  public:
    /// `calls` must outlive this.
    void recordInto(CallLog& calls) { calls_ = &calls; }

  protected:
    Recorder() = default;
    void record(std::string call) const {
        if (calls_ != nullptr) {
            calls_->add(std::move(call));
        }
    }

  private:
    CallLog* calls_ = nullptr;
};

}  // namespace doubles
