#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "desktop/wait.h"

namespace desktop {

using Environment = std::map<std::string, std::string>;

/// What to start and where its output goes.
struct ProcessOptions {
    /// The program (looked up in this process's PATH) and its arguments.
    std::vector<std::string> command{};
    /// The whole environment of the child; nothing is inherited.
    Environment environment{};
    /// Standard output goes to "<outputFile>.out", standard error to "<outputFile>.err".
    std::filesystem::path outputFile{};
    /// A descriptor of this process that the child keeps under the same number, -1 for none.
    int keptDescriptor = -1;
    /// Run in the child between fork and exec (mounts, user ids); async-signal-safe calls only.
    std::function<void()> beforeExec{};
};

/// A child process. Its output goes to files, so that it never blocks on a reader and can be read
/// after the end. The child is killed when this process dies, and ended when this object goes.
class Process {
  public:
    /// Throws std::runtime_error when the program cannot be started.
    explicit Process(ProcessOptions options);
    /// Ends the child: SIGTERM, after two seconds SIGKILL.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    [[nodiscard]] pid_t pid() const { return pid_; }
    /// Every complete line so far.
    [[nodiscard]] std::vector<std::string> outputLines() const;
    [[nodiscard]] std::vector<std::string> errorLines() const;
    /// How many lines of the output are exactly `line`.
    [[nodiscard]] std::size_t countOf(const std::string& line) const;

    /// Waits for a line that begins with `prefix`, at index `from` or later, and gives its index.
    /// Throws std::runtime_error with everything printed so far when it does not come, at once when
    /// the program has ended without it.
    std::size_t waitForLine(const std::string& prefix, std::size_t from = 0,
                            std::chrono::milliseconds limit = defaultLimit);

    [[nodiscard]] bool isRunning();
    /// Waits for the end and gives the exit status (128 + signal number for a killed child);
    /// nothing when the child is still running after `limit`.
    std::optional<int> waitForExit(std::chrono::milliseconds limit = defaultLimit);
    void signal(int number) const;
    /// SIGTERM, after two seconds SIGKILL; returns when the child is gone.
    void end();

  private:
    ProcessOptions options_;
    pid_t pid_ = -1;
    std::optional<int> status_;
};

/// Runs a short program to its end and gives its standard output; throws when it fails.
std::string runToEnd(ProcessOptions options);

}  // namespace desktop
