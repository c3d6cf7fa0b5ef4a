#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace freedesktop_tests {

/// A directory of its own for one test, gone with it.
class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "lumaframe-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~TemporaryDirectory() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    [[nodiscard]] std::string path(const std::string& name = {}) const {
        return name.empty() ? path_.string() : (path_ / name).string();
    }
    /// Writes a file as another program would, with the directories it needs.
    std::string write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << text;
        return path(name);
    }
    [[nodiscard]] std::string read(const std::string& name) const { return contents(path(name)); }

    static std::string contents(const std::string& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }
    static unsigned modeOf(const std::string& path) {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0U;
    }

  private:
    std::filesystem::path path_;
};

/// An environment variable for the length of a test; null takes it away.
class ScopedVariable {
  public:
    ScopedVariable(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) {
            old_ = old;
            wasSet_ = true;
        }
        value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
    }
    ~ScopedVariable() {
        wasSet_ ? ::setenv(name_.c_str(), old_.c_str(), 1) : ::unsetenv(name_.c_str());
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

  private:
    std::string name_;
    std::string old_;
    bool wasSet_ = false;
};

}  // namespace freedesktop_tests
