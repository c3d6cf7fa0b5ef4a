#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <string>
#include <vector>

#include "platform/file_descriptor_watch.h"

namespace platform::freedesktop {

/// A program, by its name in $PATH or its path, and its arguments.
using ProgramCommand = std::vector<std::string>;

/// Starts programs for the user that go on when this one ends. Nothing of them reaches this
/// program's output, and nothing waits for them. Main thread.
class ProgramStarter {
  public:
    /// A program that fails later than this was there for the user.
    static constexpr std::chrono::seconds failureLimit{10};

    explicit ProgramStarter(WatchFileDescriptor watch);
    ~ProgramStarter();
    ProgramStarter(const ProgramStarter&) = delete;
    ProgramStarter& operator=(const ProgramStarter&) = delete;

    /// Starts the first of `commands` that can be started. When it soon ends in failure the next
    /// one takes its turn, and after the last `onNone`, which may be called at once.
    void startFirst(std::vector<ProgramCommand> commands, std::function<void()> onNone);

  private:
    struct Child;
    void noteEnd(std::list<Child>::iterator child);

    WatchFileDescriptor watch_;
    std::list<Child> children_;
};

}  // namespace platform::freedesktop
