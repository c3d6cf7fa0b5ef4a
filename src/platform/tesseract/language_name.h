#pragma once

#include <string>
#include <string_view>

namespace platform::tesseract {

/// The engine's name of the language of a locale ("deu" for "de_AT.UTF-8@euro", "chi_tra" for
/// "zh_HK"); empty when there is none, as for "C" and "POSIX".
std::string languageOfLocale(std::string_view locale);

/// The Debian package with the data of a language ("tesseract-ocr-chi-tra").
std::string packageOfLanguage(std::string language);

}  // namespace platform::tesseract
