#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_manager.h"
#include "doubles/call_log.h"

namespace doubles {

/// Folders and files in memory. A write needs its folder; `writeError` makes every write fail.
/// In a call log: "file write: <path>", "file write text: <path>".
class FakeFileManager final : public base::FileManager, public Recorder {
  public:
    FakeFileManager() { addFolder("/home/someone/Downloads"); }

    void addFolder(const std::string& path) { folders.insert(path); }

    std::vector<std::string> downloadsDirectories() const override {
        ++downloadsCount;
        record("downloads directories");
        return downloads;
    }
    bool isReadableFolder(const std::string& path) const override {
        record("is readable: " + path);
        return !unreadable.contains(path) && folders.contains(path);
    }
    base::Status write(const std::string& path, std::span<const std::uint8_t> bytes) override {
        record("file write: " + path);
        return put(path, {bytes.begin(), bytes.end()});
    }
    base::Status writeTextAtomically(const std::string& path, std::string_view text) override {
        record("file write text: " + path);
        return put(path, {text.begin(), text.end()});
    }

    std::vector<std::string> downloads{"/home/someone/Downloads"};
    std::set<std::string> folders;
    std::set<std::string> unreadable;
    std::map<std::string, std::vector<std::uint8_t>> files;
    std::optional<base::Error> writeError;
    int writeCount = 0;
    mutable int downloadsCount = 0;

  private:
    base::Status put(const std::string& path, std::vector<std::uint8_t> bytes) {
        ++writeCount;
        if (writeError) {
            return *writeError;
        }
        if (path.find('\0') != std::string::npos) {
            return base::Error{base::ErrorKind::invalid, "The path holds a zero byte."};
        }
        const std::size_t slash = path.rfind('/');
        const std::string folder = slash == 0 ? "/" : path.substr(0, slash);
        if (slash == std::string::npos || !folders.contains(folder)) {
            return base::Error{base::ErrorKind::notFound, "The folder does not exist."};
        }
        if (folders.contains(path)) {
            return base::Error{base::ErrorKind::failed, "The target is a folder."};
        }
        files[path] = std::move(bytes);
        return base::Nothing{};
    }
};

}  // namespace doubles
