#include "platform/freedesktop/application_names.h"

#include <algorithm>
#include <system_error>

#include "platform/freedesktop/small_file.h"
#include "platform/freedesktop/xdg_directories.h"

namespace platform::freedesktop {

namespace {

/// Classes and file names differ in case from one toolkit to the next; only ASCII letters do.
std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

/// "kde/viewer.desktop" in the directory is the identifier "kde-viewer".
std::string identifierOf(const std::filesystem::path& file,
                         const std::filesystem::path& directory) {
    std::string identifier = file.lexically_relative(directory).replace_extension().string();
    std::ranges::replace(identifier, '/', '-');
    return identifier;
}

/// Two claims with one name are no conflict.
void claim(std::map<std::string, std::optional<std::string>>& index, const std::string& key,
           const std::string& name) {
    if (key.empty()) {
        return;
    }
    const auto [entry, isNew] = index.try_emplace(lowerCase(key), name);
    if (!isNew && entry->second != name) {
        entry->second.reset();
    }
}

std::optional<std::string> lookUp(const std::map<std::string, std::optional<std::string>>& index,
                                  const std::string& key) {
    const auto entry = index.find(key);
    return entry == index.end() ? std::nullopt : entry->second;
}

}  // namespace

ApplicationNames::ApplicationNames(const std::vector<std::string>& dataDirectories,
                                   std::string_view locale)
    : nameKeys_(nameKeysOf(locale)) {
    for (const std::string& directory : dataDirectories) {
        directories_.push_back(std::filesystem::path(directory) / "applications");
    }
}

ApplicationNames ApplicationNames::fromEnvironment() {
    const auto xdg = XdgDirectories::fromEnvironment();
    std::vector<std::string> directories;
    if (!xdg.dataHome.empty()) {
        directories.push_back(xdg.dataHome);
    }
    directories.insert(directories.end(), xdg.dataDirectories.begin(), xdg.dataDirectories.end());
    return {directories, messageLocale()};
}

void ApplicationNames::load() {
    times_ = currentTimes();
    for (Index* index : {&byIdentifier_, &byWindowClass_, &byLastPart_, &byExecutable_}) {
        index->clear();
    }
    for (const auto& directory : directories_) {
        loadDirectory(directory);
    }
}

std::optional<std::string> ApplicationNames::nameOf(const std::vector<std::string>& identifiers) {
    if (times_ != currentTimes()) {
        load();
    }
    for (const std::string& identifier : identifiers) {
        if (auto name = find(lowerCase(identifier))) {
            return name;
        }
    }
    return std::nullopt;
}

ApplicationNames::Times ApplicationNames::currentTimes() const {
    Times times;
    for (const auto& directory : directories_) {
        std::error_code error;
        const auto time = std::filesystem::last_write_time(directory, error);
        times.push_back(error ? std::filesystem::file_time_type::min() : time);
    }
    return times;
}

void ApplicationNames::loadDirectory(const std::filesystem::path& directory) {
    using Iterator = std::filesystem::recursive_directory_iterator;
    std::error_code error;
    for (Iterator file(directory, std::filesystem::directory_options::skip_permission_denied,
                       error);
         !error && file != Iterator(); file.increment(error)) {
        const std::string identifier = identifierOf(file->path(), directory);
        if (file->path().extension() != ".desktop" ||
            byIdentifier_.contains(lowerCase(identifier))) {
            continue;
        }
        const auto text = readSmallFile(file->path().string());
        const auto entry =
            text ? parseDesktopEntry(text.value(), nameKeys_) : std::optional<DesktopEntry>();
        if (entry) {
            add(identifier, *entry);
        }
    }
}

void ApplicationNames::add(const std::string& identifier, const DesktopEntry& entry) {
    if (entry.visibility == DesktopEntry::Visibility::deleted) {
        byIdentifier_[lowerCase(identifier)] = std::nullopt;
        return;
    }
    byIdentifier_[lowerCase(identifier)] = entry.name;
    claim(byWindowClass_, entry.startupWindowClass, entry.name);
    claim(byLastPart_, identifier.substr(identifier.rfind('.') + 1), entry.name);
    claim(byExecutable_, entry.executable, entry.name);
}

std::optional<std::string> ApplicationNames::find(const std::string& identifier) const {
    for (const Index* index : {&byIdentifier_, &byWindowClass_, &byLastPart_, &byExecutable_}) {
        if (auto name = lookUp(*index, identifier)) {
            return name;
        }
    }
    return std::nullopt;
}

}  // namespace platform::freedesktop
