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

/// The languages to read with, and where their data is.
struct LanguageSelection {
    std::string directory;
    /// The engine's names, the user's first, English always among them.
    std::vector<std::string> languages;
    /// Changes when data is installed, replaced or removed.
    std::int64_t changeTime = 0;
    friend bool operator==(const LanguageSelection&, const LanguageSelection&) = default;
};

/// The engine's names of the user's languages, the preferred ones first, without English.
std::vector<std::string> languagesOfUser(const LanguageVariables& variables);

/// Those of the user's languages whose data is installed now, and English. The error names the
/// package that is missing.
base::Result<LanguageSelection> selectLanguages(const LanguageVariables& variables);

}  // namespace platform::tesseract
