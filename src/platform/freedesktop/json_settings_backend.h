#pragma once

#include <sys/stat.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "app/settings_backend.h"
#include "base/alive.h"
#include "base/log.h"
#include "base/main_queue.h"
#include "platform/file_descriptor_watch.h"
#include "platform/freedesktop/directory_watch.h"
#include "platform/freedesktop/settings_document.h"
#include "platform/freedesktop/xdg_directories.h"

namespace platform::freedesktop {

/// The settings in `lumaframe/settings.json` of the configuration directory. Main thread.
///
/// Every read compares the file with what was read last, so that a change by another program counts
/// at once; the watch on the directory only serves the change handler. A write is a rename, visible
/// to every program when it returns; the disk is told to keep it right after, on a thread of its
/// own (two syncs were measured at 7 ms, once for each of the values that a first start writes).
class JsonSettingsBackend final : public app::SettingsBackend {
  public:
    /// Reads the file, and prints one line when it is broken and was set aside. `log` and `queue`
    /// must outlive the object.
    static std::unique_ptr<JsonSettingsBackend> create(const XdgDirectories& directories,
                                                       base::Log& log, base::MainQueue& queue,
                                                       const WatchFileDescriptor& watch);

    [[nodiscard]] std::optional<app::SettingsValue> read(const std::string& key) override;
    base::Status write(const std::string& key, const app::SettingsValue& value) override;
    void setChangeHandler(std::function<void(const std::string& key)> handler) override;

  private:
    /// What tells one version of the file from the next.
    struct Version {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        timespec modified{};
        /// Counts only for a file that could not be read: its owner may have changed that.
        timespec attributesChanged{};
    };
    /// What to do with a file that does not parse.
    enum class BrokenFile {
        /// Another program may be in the middle of writing it.
        waitForTheRest,
        setAside,
    };

    JsonSettingsBackend(std::string directory, base::Log& log, base::MainQueue& queue);
    [[nodiscard]] std::optional<Version> versionOnDisk() const;
    [[nodiscard]] bool isUpToDate() const;
    void refresh(BrokenFile whenBroken);
    /// What waited for a file that can be written again.
    void storeUnsaved();
    void adopt(SettingsDocument document);
    void setAside(const std::string& reason);
    base::Status store(const SettingsDocument& document);
    base::Status prepareDirectory();
    void announce(std::set<std::string> keys);
    void callHandlerLater();
    void syncLater();

    /// Empty when the user has no configuration directory.
    std::string directory_;
    std::string path_;
    base::Log& log_;
    base::MainQueue& queue_;
    SettingsDocument document_;
    std::optional<Version> version_;
    /// Why the file that exists must not be replaced, and its version counts as read.
    std::optional<base::Error> unreadable_;
    /// What could not be stored, newest; read before the file.
    std::map<std::string, app::SettingsValue> unsaved_;
    std::function<void(const std::string&)> changeHandler_;
    std::set<std::string> changedKeys_;
    bool isSyncQueued_ = false;
    std::unique_ptr<DirectoryWatch> watch_;
    base::Alive alive_;
};

}  // namespace platform::freedesktop
