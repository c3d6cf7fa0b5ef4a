#include "platform/freedesktop/json_settings_backend.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <utility>

#include "platform/freedesktop/disk_sync.h"
#include "platform/freedesktop/file_errors.h"
#include "platform/freedesktop/file_handle.h"
#include "platform/freedesktop/file_writing.h"
#include "platform/freedesktop/make_directories.h"
#include "platform/freedesktop/small_file.h"

namespace platform::freedesktop {

namespace {

/// A name for the broken file at `path` that nothing has yet.
std::string nameForBroken(const std::string& path) {
    const std::time_t now = std::time(nullptr);
    std::tm calendar{};
    gmtime_r(&now, &calendar);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &calendar);
    const std::string first = path + ".corrupt-" + text;
    std::string name = first;
    for (int number = 2; ::access(name.c_str(), F_OK) == 0; ++number) {
        name = first + "-" + std::to_string(number);
    }
    return name;
}

/// Where the file really lies, so that a link to it (a directory of dot files) stays a link.
std::string resolved(const std::string& path) {
    std::error_code error;
    const auto target = std::filesystem::canonical(path, error);
    return error ? path : target.string();
}

/// Another program may have made it with the rights of any other file. Not where a link leads to.
void makeOwnersAlone(const std::string& path) {
    const FileHandle file(
        ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.isOpen()) {
        static_cast<void>(::fchmod(file.get(), S_IRUSR | S_IWUSR));
    }
}

bool isSameTime(const timespec& left, const timespec& right) {
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

}  // namespace

std::unique_ptr<JsonSettingsBackend> JsonSettingsBackend::create(const XdgDirectories& directories,
                                                                 base::Log& log,
                                                                 base::MainQueue& queue,
                                                                 const WatchFileDescriptor& watch) {
    const std::string& configHome = directories.configHome;
    std::unique_ptr<JsonSettingsBackend> backend(new JsonSettingsBackend(
        configHome.empty() ? std::string() : configHome + "/lumaframe", log, queue));
    if (!backend->directory_.empty()) {
        backend->refresh(BrokenFile::setAside);
        backend->watch_ = std::make_unique<DirectoryWatch>(
            backend->directory_, watch, [settings = backend.get()] {
                settings->refresh(BrokenFile::setAside);
                settings->storeUnsaved();
            });
    }
    return backend;
}

JsonSettingsBackend::JsonSettingsBackend(std::string directory, base::Log& log,
                                         base::MainQueue& queue)
    : directory_(std::move(directory)),
      path_(directory_ + "/settings.json"),
      log_(log),
      queue_(queue) {}

std::optional<app::SettingsValue> JsonSettingsBackend::read(const std::string& key) {
    refresh(BrokenFile::waitForTheRest);
    const auto unsaved = unsaved_.find(key);
    return unsaved == unsaved_.end() ? document_.value(key) : std::optional(unsaved->second);
}

base::Status JsonSettingsBackend::write(const std::string& key, const app::SettingsValue& value) {
    refresh(BrokenFile::setAside);
    if (unsaved_.empty() && document_.value(key) == value) {
        return base::Nothing{};
    }
    unsaved_.insert_or_assign(key, value);
    if (unreadable_) {
        return *unreadable_;
    }
    SettingsDocument next = document_;
    for (const auto& [unsavedKey, unsavedValue] : unsaved_) {
        const bool isHeld = next.set(unsavedKey, unsavedValue);
        if (!isHeld && unsavedKey == key) {
            return base::Error{base::ErrorKind::invalid,
                               "The setting “" + key + "” couldn’t be saved: it is not UTF-8."};
        }
    }
    if (const auto status = store(next); !status) {
        return status;
    }
    std::erase_if(unsaved_,
                  [&next](const auto& entry) { return next.value(entry.first) == entry.second; });
    document_ = std::move(next);
    // Not the version on disk: another program may have replaced the file already.
    version_ = Version{};
    syncLater();
    return base::Nothing{};
}

void JsonSettingsBackend::setChangeHandler(std::function<void(const std::string& key)> handler) {
    changeHandler_ = std::move(handler);
}

std::optional<JsonSettingsBackend::Version> JsonSettingsBackend::versionOnDisk() const {
    struct stat status {};
    if (::stat(path_.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return Version{status.st_dev, status.st_ino, status.st_size, status.st_mtim, status.st_ctim};
}

bool JsonSettingsBackend::isUpToDate() const {
    const auto found = versionOnDisk();
    if (!found || !version_) {
        return !found && !version_;
    }
    const bool isSameFile = found->device == version_->device && found->inode == version_->inode &&
                            found->size == version_->size &&
                            isSameTime(found->modified, version_->modified);
    return isSameFile &&
           (!unreadable_ || isSameTime(found->attributesChanged, version_->attributesChanged));
}

void JsonSettingsBackend::refresh(BrokenFile whenBroken) {
    if (directory_.empty() || isUpToDate()) {
        return;
    }
    // Taken before the read: what changes in between is seen at the next refresh.
    const auto version = versionOnDisk();
    unreadable_.reset();
    const auto text = readSmallFile(path_);
    if (!text && text.error().kind != base::ErrorKind::notFound) {
        unreadable_ = text.error();
        log_.line(text.error().sentence + " The settings are the defaults.");
    }
    auto document = text ? SettingsDocument::parse(text.value()) : SettingsDocument();
    if (!document && whenBroken == BrokenFile::waitForTheRest) {
        return;
    }
    version_ = version;
    if (!document) {
        setAside(text.value().empty() ? "is empty" : "is not a JSON object");
    }
    adopt(document.value_or(SettingsDocument()));
}

void JsonSettingsBackend::storeUnsaved() {
    if (unsaved_.empty() || unreadable_) {
        return;
    }
    // Writing any of them writes all.
    const auto [key, value] = *unsaved_.begin();
    if (const auto status = write(key, value); !status) {
        log_.line(status.error().sentence);
    }
}

void JsonSettingsBackend::adopt(SettingsDocument document) {
    auto keys = document.keysThatDifferFrom(document_);
    document_ = std::move(document);
    for (const auto& key : keys) {
        unsaved_.erase(key);
    }
    announce(std::move(keys));
}

void JsonSettingsBackend::setAside(const std::string& reason) {
    const std::string name = nameForBroken(path_);
    if (::rename(path_.c_str(), name.c_str()) == 0) {
        makeOwnersAlone(name);
        version_.reset();
        log_.line("The settings file " + reason + " and was set aside as " + name + ".");
        return;
    }
    unreadable_ = writeError(name, errno);
    log_.line("The settings file " + path_ + " " + reason + " and couldn’t be set aside.");
}

base::Status JsonSettingsBackend::prepareDirectory() {
    if (directory_.empty()) {
        return base::Error{base::ErrorKind::notFound,
                           "The settings couldn’t be saved: there is no home directory."};
    }
    const auto status = makeDirectories(directory_);
    if (status && watch_) {
        watch_->follow();
    }
    return status;
}

base::Status JsonSettingsBackend::store(const SettingsDocument& document) {
    if (auto status = prepareDirectory(); !status) {
        return status;
    }
    return replaceFile(resolved(path_), document.text(), FileAccess::ownerOnly);
}

void JsonSettingsBackend::announce(std::set<std::string> keys) {
    const bool isQueued = !changedKeys_.empty();
    changedKeys_.merge(keys);
    if (!isQueued && !changedKeys_.empty() && changeHandler_) {
        callHandlerLater();
    } else if (!changeHandler_) {
        changedKeys_.clear();
    }
}

void JsonSettingsBackend::callHandlerLater() {
    // Later, since a read may have noticed the change: its caller is in the middle of something.
    queue_.post(alive_.guard([this] {
        const auto handler = changeHandler_;
        for (const auto& key : std::exchange(changedKeys_, {})) {
            if (handler) {
                handler(key);
            }
        }
    }));
}

void JsonSettingsBackend::syncLater() {
    if (std::exchange(isSyncQueued_, true)) {
        return;
    }
    queue_.post(alive_.guard([this] {
        isSyncQueued_ = false;
        syncInBackground(resolved(path_));
    }));
}

}  // namespace platform::freedesktop
