#include "platform/tesseract/installed_languages.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/freedesktop/temporary_directory.h"
#include "platform/tesseract/language_name.h"

namespace {

using freedesktop_tests::TemporaryDirectory;
using platform::tesseract::languageOfLocale;
using platform::tesseract::languagesOfUser;
using platform::tesseract::LanguageVariables;
using platform::tesseract::selectLanguages;
using Names = std::vector<std::string>;

LanguageVariables localeOf(const std::string& lang, const std::string& list = {}) {
    LanguageVariables variables;
    variables.lang = lang;
    variables.language = list;
    return variables;
}

TEST(LanguageName, a_locale_has_the_engines_name_of_its_language) {
    EXPECT_EQ(languageOfLocale("de_AT.UTF-8@euro"), "deu");
    EXPECT_EQ(languageOfLocale("en"), "eng");
    EXPECT_EQ(languageOfLocale("fil_PH"), "fil");
    EXPECT_EQ(languageOfLocale("zh_CN.UTF-8"), "chi_sim");
    EXPECT_EQ(languageOfLocale("zh_HK"), "chi_tra");
    EXPECT_EQ(languageOfLocale("nn_NO.UTF-8"), "nor");
    EXPECT_EQ(languageOfLocale("sr_RS.UTF-8"), "srp");
    EXPECT_EQ(languageOfLocale("sr_RS@latin"), "srp_latn");
    EXPECT_EQ(languageOfLocale("zu"), "");
}

TEST(LanguageName, what_names_no_language_has_none) {
    for (const char* locale : {"", "C", "POSIX", "C.UTF-8", "../", "..", "a/b", "EN", "_", "."}) {
        EXPECT_EQ(languageOfLocale(locale), "") << locale;
    }
}

TEST(LanguageName, a_package_is_named_as_the_distribution_does) {
    EXPECT_EQ(platform::tesseract::packageOfLanguage("chi_sim"), "tesseract-ocr-chi-sim");
}

TEST(LanguagesOfUser, the_stronger_variable_decides) {
    LanguageVariables variables = localeOf("de_DE.UTF-8");
    EXPECT_EQ(languagesOfUser(variables), Names{"deu"});
    variables.lcMessages = "fr_FR.UTF-8";
    EXPECT_EQ(languagesOfUser(variables), Names{"fra"});
    variables.lcAll = "it_IT.UTF-8";
    EXPECT_EQ(languagesOfUser(variables), Names{"ita"});
}

TEST(LanguagesOfUser, the_list_comes_first_and_nothing_twice) {
    EXPECT_EQ(languagesOfUser(localeOf("de_DE.UTF-8", "fr_CH:de_CH:de:en:sv")),
              (Names{"fra", "deu", "swe"}));
}

TEST(LanguagesOfUser, without_a_language_in_the_locale_the_list_does_not_count) {
    EXPECT_EQ(languagesOfUser(localeOf("C.UTF-8", "de:fr")), Names{});
    EXPECT_EQ(languagesOfUser(localeOf("", "de")), Names{});
}

class InstalledLanguages : public testing::Test {
  protected:
    LanguageVariables variables(const std::string& lang, const std::string& list = {}) {
        LanguageVariables variables = localeOf(lang, list);
        variables.tessdataPrefix = directory_.path();
        return variables;
    }
    void install(const std::string& language, const std::string& content = "data") {
        directory_.write(language + ".traineddata", content);
    }

    TemporaryDirectory directory_;
};

TEST_F(InstalledLanguages, english_is_always_read_and_comes_last) {
    install("eng");
    install("deu");
    const auto selection = selectLanguages(variables("de_DE.UTF-8"));
    ASSERT_TRUE(selection);
    EXPECT_EQ(selection.value().languages, (Names{"deu", "eng"}));
    EXPECT_EQ(selection.value().directory, directory_.path());
    EXPECT_EQ(selectLanguages(variables("en_GB.UTF-8")).value().languages, Names{"eng"});
}

TEST_F(InstalledLanguages, a_language_that_is_not_installed_is_left_out) {
    install("eng");
    EXPECT_EQ(selectLanguages(variables("de_DE.UTF-8")).value().languages, Names{"eng"});
}

TEST_F(InstalledLanguages, an_empty_or_foreign_file_is_no_data) {
    install("eng");
    install("deu", "");
    std::filesystem::create_directory(directory_.path("fra.traineddata"));
    EXPECT_EQ(selectLanguages(variables("de_DE.UTF-8", "fr:de")).value().languages, Names{"eng"});
}

TEST_F(InstalledLanguages, missing_english_data_is_an_error_that_names_the_package) {
    install("deu");
    const auto selection = selectLanguages(variables("de_DE.UTF-8"));
    ASSERT_FALSE(selection);
    EXPECT_EQ(selection.error().kind, base::ErrorKind::unavailable);
    EXPECT_NE(selection.error().sentence.find("tesseract-ocr-eng"), std::string::npos);
}

TEST_F(InstalledLanguages, a_long_list_is_cut_but_keeps_english) {
    for (const char* language : {"eng", "deu", "fra", "ita", "spa", "swe"}) {
        install(language);
    }
    EXPECT_EQ(selectLanguages(variables("de_DE", "de:fr:it:es:sv")).value().languages,
              (Names{"deu", "fra", "ita", "eng"}));
}

TEST_F(InstalledLanguages, replaced_data_makes_another_selection) {
    install("eng");
    const auto before = selectLanguages(variables("en_GB"));
    EXPECT_EQ(before.value(), selectLanguages(variables("en_GB")).value());
    // A package manager moves the new file into place.
    directory_.write("new", "other data");
    std::filesystem::rename(directory_.path("new"), directory_.path("eng.traineddata"));
    EXPECT_FALSE(before.value() == selectLanguages(variables("en_GB")).value());
}

}  // namespace
