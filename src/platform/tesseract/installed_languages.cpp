#include "platform/tesseract/installed_languages.h"

#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <sstream>

#include "platform/environment.h"
#include "platform/tesseract/helper_command.h"
#include "platform/tesseract/language_name.h"

namespace platform::tesseract {

namespace {

constexpr const char* english = "eng";
/// Each language adds half of the time that the first one takes.
constexpr std::size_t maximumLanguageCount = 4;

/// Where distributions put the data: Debian, Fedora, the others, and the engine by itself.
constexpr const char* usualDirectories[] = {
    "/usr/share/tesseract-ocr/5/tessdata", "/usr/share/tesseract-ocr/4.00/tessdata",
    "/usr/share/tesseract/tessdata",       "/usr/share/tessdata",
    "/usr/local/share/tessdata",
};

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

/// Of the data of `language` in `directory`; nothing when there is none.
std::optional<FileVersion> versionOf(const std::string& directory, const std::string& language) {
    struct stat status {};
    const std::string path = directory + "/" + language + ".traineddata";
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0) {
        return std::nullopt;
    }
    // Two changes within one tick of the clock have the same time.
    return FileVersion{status.st_ino, nanoseconds(status.st_ctim)};
}

std::optional<std::string> findDirectory(const std::string& preferred) {
    std::vector<std::string> directories(std::begin(usualDirectories), std::end(usualDirectories));
    if (!preferred.empty()) {
        // What the user has chosen is not replaced by what is elsewhere.
        directories = {preferred};
    }
    const auto found =
        std::find_if(directories.begin(), directories.end(),
                     [](const std::string& path) { return versionOf(path, english).has_value(); });
    return found == directories.end() ? std::nullopt : std::optional(*found);
}

}  // namespace

LanguageVariables LanguageVariables::fromEnvironment() {
    return {.lcAll = environmentValue("LC_ALL"),
            .lcMessages = environmentValue("LC_MESSAGES"),
            .lang = environmentValue("LANG"),
            .language = environmentValue("LANGUAGE"),
            .tessdataPrefix = environmentValue(dataDirectoryVariable)};
}

std::vector<std::string> languagesOfUser(const LanguageVariables& variables) {
    const std::string& locale = !variables.lcAll.empty()        ? variables.lcAll
                                : !variables.lcMessages.empty() ? variables.lcMessages
                                                                : variables.lang;
    const std::string language = languageOfLocale(locale);
    std::vector<std::string> languages;
    const auto add = [&](const std::string& name) {
        const bool isKnown = std::find(languages.begin(), languages.end(), name) != languages.end();
        if (!name.empty() && name != english && !isKnown) {
            languages.push_back(name);
        }
    };
    // As for messages: the list counts only where the locale names a language.
    if (!language.empty()) {
        std::istringstream list(variables.language);
        for (std::string entry; std::getline(list, entry, ':');) {
            add(languageOfLocale(entry));
        }
    }
    add(language);
    return languages;
}

base::Result<LanguageSelection> selectLanguages(const LanguageVariables& variables) {
    const auto directory = findDirectory(variables.tessdataPrefix);
    if (!directory) {
        return base::Error{base::ErrorKind::unavailable,
                           "The language data for text recognition is missing; please install the "
                           "package " +
                               packageOfLanguage(english) + "."};
    }
    LanguageSelection selection;
    selection.directory = *directory;
    std::vector<std::string> wanted = languagesOfUser(variables);
    wanted.emplace_back(english);
    for (const std::string& language : wanted) {
        const auto version = versionOf(*directory, language);
        const bool isFull = selection.languages.size() + 1 == maximumLanguageCount;
        if (version && (!isFull || language == english)) {
            selection.languages.push_back(language);
            selection.versions.push_back(*version);
        }
    }
    return selection;
}

}  // namespace platform::tesseract
