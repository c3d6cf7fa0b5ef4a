#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/freedesktop/desktop_entry.h"

namespace platform::freedesktop {

/// The names of the installed applications, as their `.desktop` files give them. Main thread.
///
/// The files are read at the first question (or at `load`), and again when one of the directories
/// has changed since.
class ApplicationNames {
  public:
    /// `dataDirectories` are those that hold an `applications` directory, best first; `locale` is
    /// of the form lang_COUNTRY.ENCODING@MODIFIER.
    ApplicationNames(const std::vector<std::string>& dataDirectories, std::string_view locale);
    /// For the directories and the language of this process.
    static ApplicationNames fromEnvironment();

    /// Reads the files ahead of the first question: some milliseconds.
    void load();
    /// The name of the application that one of `identifiers` stands for, tried in their order: the
    /// identifier of a `.desktop` file, the class of its windows, the last part of its reverse-DNS
    /// identifier, or the name of its program. None when nothing matches, or more than one
    /// application does.
    std::optional<std::string> nameOf(const std::vector<std::string>& identifiers);

  private:
    using Times = std::vector<std::filesystem::file_time_type>;
    /// A name, or nothing once two applications lay claim to it.
    using Index = std::map<std::string, std::optional<std::string>>;

    [[nodiscard]] Times currentTimes() const;
    void loadDirectory(const std::filesystem::path& directory);
    void add(const std::string& identifier, const DesktopEntry& entry);
    [[nodiscard]] std::optional<std::string> find(const std::string& identifier) const;

    std::vector<std::filesystem::path> directories_;
    std::vector<std::string> nameKeys_;
    Times times_;
    /// By identifier in lower case; nothing for a deleted application.
    Index byIdentifier_;
    Index byWindowClass_;
    Index byLastPart_;
    Index byExecutable_;
};

}  // namespace platform::freedesktop
