#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/result.h"

namespace platform::tesseract {

/// The environment variables that say which languages a user reads, and where the data is.
struct LanguageVariables {
    std::string lcAll;
    std::string lcMessages;
    std::string lang;
    /// A list in order of preference, separated by ':'.
    std::string language;
    std::string tessdataPrefix;

    static LanguageVariables fromEnvironment();
};

/// Which of the files that one after the other had the same name.
struct FileVersion {
    std::uint64_t inode = 0;
    /// Of its last change, in nanoseconds.
    std::int64_t time = 0;
    friend bool operator==(const FileVersion&, const FileVersion&) = default;
};

/// The languages to read with, and where their data is.
struct LanguageSelection {
    std::string directory;
    /// The engine's names, the user's first, English always among them.
    std::vector<std::string> languages;
    /// Of their data.
    std::vector<FileVersion> versions;
    friend bool operator==(const LanguageSelection&, const LanguageSelection&) = default;
};

/// The engine's names of the user's languages, the preferred ones first, without English.
std::vector<std::string> languagesOfUser(const LanguageVariables& variables);

/// Those of the user's languages whose data is installed now, and English. The error names the
/// package that is missing.
base::Result<LanguageSelection> selectLanguages(const LanguageVariables& variables);

}  // namespace platform::tesseract
