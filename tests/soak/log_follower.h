#pragma once

#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace soak {

/// Reads the growing output file of a program, each line once: a log of a hundred thousand lines
/// costs no more than a short one.
class LogFollower {
  public:
    /// `counted` are the beginnings of the lines to count from the first line on.
    LogFollower(const std::filesystem::path& file, const std::vector<std::string>& counted);

    /// Waits for a line that begins with `prefix` behind the last one found, and gives what follows
    /// the prefix. Throws std::runtime_error with the latest lines when it does not come.
    std::string waitFor(const std::string& prefix);
    /// Forgets the lines so far for `waitFor`; they are counted all the same.
    void skip();
    /// How many lines so far begin with `prefix`, one of the counted ones.
    std::size_t countOf(const std::string& prefix);

  private:
    void readNew();

    std::ifstream stream_;
    std::string incomplete_;
    std::deque<std::string> unread_;
    std::deque<std::string> latest_;
    std::map<std::string, std::size_t> counts_;
};

}  // namespace soak
