#include "platform/tesseract/language_name.h"

#include <algorithm>
#include <array>
#include <utility>

namespace platform::tesseract {

namespace {

/// ISO 639-1 and the engine's name, which is mostly that of ISO 639-2. Sorted by the first.
constexpr auto languageNames = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"af", "afr"}, {"am", "amh"}, {"ar", "ara"}, {"as", "asm"}, {"az", "aze"},     {"be", "bel"},
    {"bg", "bul"}, {"bn", "ben"}, {"bo", "bod"}, {"br", "bre"}, {"bs", "bos"},     {"ca", "cat"},
    {"co", "cos"}, {"cs", "ces"}, {"cy", "cym"}, {"da", "dan"}, {"de", "deu"},     {"dv", "div"},
    {"dz", "dzo"}, {"el", "ell"}, {"en", "eng"}, {"eo", "epo"}, {"es", "spa"},     {"et", "est"},
    {"eu", "eus"}, {"fa", "fas"}, {"fi", "fin"}, {"fo", "fao"}, {"fr", "fra"},     {"fy", "fry"},
    {"ga", "gle"}, {"gd", "gla"}, {"gl", "glg"}, {"gu", "guj"}, {"he", "heb"},     {"hi", "hin"},
    {"hr", "hrv"}, {"ht", "hat"}, {"hu", "hun"}, {"hy", "hye"}, {"id", "ind"},     {"is", "isl"},
    {"it", "ita"}, {"iu", "iku"}, {"ja", "jpn"}, {"jv", "jav"}, {"ka", "kat"},     {"kk", "kaz"},
    {"km", "khm"}, {"kn", "kan"}, {"ko", "kor"}, {"ku", "kmr"}, {"ky", "kir"},     {"la", "lat"},
    {"lb", "ltz"}, {"lo", "lao"}, {"lt", "lit"}, {"lv", "lav"}, {"mi", "mri"},     {"mk", "mkd"},
    {"ml", "mal"}, {"mn", "mon"}, {"mr", "mar"}, {"ms", "msa"}, {"mt", "mlt"},     {"my", "mya"},
    {"nb", "nor"}, {"ne", "nep"}, {"nl", "nld"}, {"nn", "nor"}, {"no", "nor"},     {"oc", "oci"},
    {"or", "ori"}, {"pa", "pan"}, {"pl", "pol"}, {"ps", "pus"}, {"pt", "por"},     {"qu", "que"},
    {"ro", "ron"}, {"ru", "rus"}, {"sa", "san"}, {"sd", "snd"}, {"si", "sin"},     {"sk", "slk"},
    {"sl", "slv"}, {"sq", "sqi"}, {"sr", "srp"}, {"su", "sun"}, {"sv", "swe"},     {"sw", "swa"},
    {"ta", "tam"}, {"te", "tel"}, {"tg", "tgk"}, {"th", "tha"}, {"ti", "tir"},     {"tl", "fil"},
    {"to", "ton"}, {"tr", "tur"}, {"tt", "tat"}, {"ug", "uig"}, {"uk", "ukr"},     {"ur", "urd"},
    {"uz", "uzb"}, {"vi", "vie"}, {"yi", "yid"}, {"yo", "yor"}, {"zh", "chi_sim"},
});

std::string languageOfCode(std::string_view code) {
    const auto* const found =
        std::lower_bound(languageNames.begin(), languageNames.end(), code,
                         [](const auto& entry, std::string_view key) { return entry.first < key; });
    return found != languageNames.end() && found->first == code ? std::string(found->second)
                                                                : std::string();
}

/// A code that is not in the table may be the engine's own name already ("fil", "chr"). Only
/// letters are let through: the name becomes part of a path.
std::string languageOfLongCode(std::string_view code) {
    const bool isCode = code.size() == 3 && std::all_of(code.begin(), code.end(), [](char letter) {
                            return letter >= 'a' && letter <= 'z';
                        });
    return isCode ? std::string(code) : std::string();
}

}  // namespace

std::string languageOfLocale(std::string_view locale) {
    const std::string_view modifier =
        locale.find('@') == std::string_view::npos ? "" : locale.substr(locale.find('@') + 1);
    const std::string_view name = locale.substr(0, locale.find_first_of(".@"));
    const std::string_view code = name.substr(0, name.find('_'));
    const std::string_view territory =
        name.size() > code.size() ? name.substr(code.size() + 1) : "";
    const bool isTraditional = territory == "TW" || territory == "HK" || territory == "MO";
    if (code == "zh" && isTraditional) {
        return "chi_tra";
    }
    std::string language = code.size() == 2 ? languageOfCode(code) : languageOfLongCode(code);
    if (language == "srp" && modifier == "latin") {
        language = "srp_latn";
    } else if ((language == "uzb" || language == "aze") && modifier == "cyrillic") {
        language += "_cyrl";
    }
    return language;
}

std::string packageOfLanguage(std::string language) {
    std::replace(language.begin(), language.end(), '_', '-');
    return "tesseract-ocr-" + language;
}

}  // namespace platform::tesseract
