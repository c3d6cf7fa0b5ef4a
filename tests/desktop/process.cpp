#include "desktop/process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace desktop {
namespace {

std::string contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> completeLines(const std::filesystem::path& path) {
    const std::string text = contents(path);
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos;
         end = text.find('\n', begin)) {
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines) {
        text += "    " + line + "\n";
    }
    return text;
}

std::filesystem::path withSuffix(std::filesystem::path path, const char* suffix) {
    return path += suffix;
}

int openForWriting(const std::filesystem::path& path) {
    return ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600);
}

/// Found before the fork: the child's environment may carry another PATH or none.
std::string resolved(const std::string& program) {
    if (program.find('/') != std::string::npos) {
        return program;
    }
    std::istringstream path(std::getenv("PATH") != nullptr ? std::getenv("PATH") : "/usr/bin:/bin");
    for (std::string directory; std::getline(path, directory, ':');) {
        const std::string candidate = directory + "/" + program;
        if (::access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    throw std::runtime_error("The program \"" + program + "\" is not installed.");
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (auto& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

Process::Process(ProcessOptions options) : options_(std::move(options)) {
    const std::string program = resolved(options_.command.front());
    std::vector<std::string> environment;
    for (const auto& [name, value] : options_.environment) {
        environment.push_back(name + "=" + value);
    }
    const auto arguments = pointersTo(options_.command);
    const auto variables = pointersTo(environment);
    const int output = openForWriting(withSuffix(options_.outputFile, ".out"));
    const int errors = openForWriting(withSuffix(options_.outputFile, ".err"));
    const pid_t parent = ::getpid();
    pid_ = ::fork();
    if (pid_ == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) {
            ::_exit(126);
        }
        const int nothing = ::open("/dev/null", O_RDONLY);
        ::dup2(nothing, 0);
        ::dup2(output, 1);
        ::dup2(errors, 2);
        if (options_.keptDescriptor >= 0) {
            ::fcntl(options_.keptDescriptor, F_SETFD, 0);
        }
        if (options_.beforeExec) {
            options_.beforeExec();
        }
        ::execve(program.c_str(), arguments.data(), variables.data());
        ::_exit(127);
    }
    ::close(output);
    ::close(errors);
    if (pid_ < 0) {
        throw std::runtime_error("The program \"" + program + "\" could not be started.");
    }
}

Process::~Process() {
    end();
}

std::vector<std::string> Process::outputLines() const {
    return completeLines(withSuffix(options_.outputFile, ".out"));
}

std::vector<std::string> Process::errorLines() const {
    return completeLines(withSuffix(options_.outputFile, ".err"));
}

std::size_t Process::countOf(const std::string& line) const {
    const auto lines = outputLines();
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), line));
}

std::size_t Process::waitForLine(const std::string& prefix, std::size_t from,
                                 std::chrono::milliseconds limit) {
    std::size_t index = from;
    bool found = false;
    waitUntil(
        [&] {
            // Asked before the reading, so that the last lines of an ended program are seen.
            const bool wasRunning = isRunning();
            const auto lines = outputLines();
            while (index < lines.size() && !found) {
                found = lines[index].starts_with(prefix);
                index += found ? 0 : 1;
            }
            return found || !wasRunning;
        },
        limit);
    if (!found) {
        throw std::runtime_error("No line \"" + prefix + "\" after line " + std::to_string(from) +
                                 " from " + options_.command.front() +
                                 (isRunning() ? "" : ", which has ended") + ". It printed:\n" +
                                 joined(outputLines()) + "and as errors:\n" + joined(errorLines()));
    }
    return index;
}

bool Process::isRunning() {
    if (status_) {
        return false;
    }
    int status = 0;
    if (::waitpid(pid_, &status, WNOHANG) == pid_) {
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    return !status_;
}

std::optional<int> Process::waitForExit(std::chrono::milliseconds limit) {
    waitUntil([this] { return !isRunning(); }, limit);
    return status_;
}

void Process::signal(int number) const {
    if (!status_) {
        ::kill(pid_, number);
    }
}

void Process::end() {
    if (pid_ <= 0 || !isRunning()) {
        return;
    }
    signal(SIGTERM);
    if (!waitForExit(std::chrono::seconds(2))) {
        signal(SIGKILL);
        waitForExit(std::chrono::seconds(10));
    }
}

std::string runToEnd(ProcessOptions options) {
    const std::filesystem::path output = withSuffix(options.outputFile, ".out");
    const std::string name = options.command.front();
    Process process(std::move(options));
    const auto status = process.waitForExit(std::chrono::seconds(30));
    if (!status || *status != 0) {
        throw std::runtime_error(
            name + (status ? " failed with status " + std::to_string(*status) : " did not end") +
            ":\n" + joined(process.outputLines()) + joined(process.errorLines()));
    }
    return contents(output);
}

}  // namespace desktop
