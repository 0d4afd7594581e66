#include "tests/resources/translations/TranslationSample.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>

namespace orlimo {
namespace {

using Environment = std::map<std::string, std::optional<std::string>>;

/// The language of a program that is started with these of the variables that choose it.
std::string languageIn(Environment environment)
{
    for (const char* variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        environment.emplace(variable, std::nullopt);
    }
    ChildProcess probe(ORLIMO_LANGUAGE_PROBE, {.environment = environment});
    const std::string words = probe.readLine().value_or("nothing");
    EXPECT_EQ(probe.awaitEnd().status, 0);
    for (const auto& [language, wordsOfLanguage] : translationSamplesByLanguage()) {
        if (words == wordsOfLanguage) {
            return language;
        }
    }
    return words;
}

TEST(UserLanguages, ComeFromTheEnvironment)
{
    EXPECT_EQ(languageIn({}), "English");
    EXPECT_EQ(languageIn({{"LANG", "de_DE.UTF-8"}}), "de");
    EXPECT_EQ(languageIn({{"LANG", "de_AT@euro"}}), "de");
    EXPECT_EQ(languageIn({{"LANG", "zh_TW.UTF-8"}}), "zh_Hant");
    EXPECT_EQ(languageIn({{"LANG", "zh_CN.UTF-8"}}), "zh_Hans");
    EXPECT_EQ(languageIn({{"LANG", "nl_NL.UTF-8"}}), "English");
    EXPECT_EQ(languageIn({{"LANG", "C.UTF-8"}}), "English");
}

TEST(UserLanguages, AreLedByTheStrongestVariable)
{
    EXPECT_EQ(languageIn({{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "ja_JP.UTF-8"}}), "ja");
    EXPECT_EQ(
        languageIn(
            {{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "ja_JP.UTF-8"}, {"LC_ALL", "fr_FR.UTF-8"}}),
        "fr");
    EXPECT_EQ(languageIn({{"LANG", "de_DE.UTF-8"}, {"LC_ALL", ""}}), "de");
    EXPECT_EQ(languageIn({{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "en_US.UTF-8"}}), "English");
}

TEST(UserLanguages, AreThoseOfTheListWhereThereIsOne)
{
    EXPECT_EQ(languageIn({{"LANG", "en_US.UTF-8"}, {"LANGUAGE", "ko"}}), "ko");
    EXPECT_EQ(languageIn({{"LC_ALL", "en_US.UTF-8"}, {"LANGUAGE", "nl:it:de"}}), "it");
    EXPECT_EQ(languageIn({{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "en_GB:en"}}), "English");
    EXPECT_EQ(languageIn({{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "xx:zh_Hant"}}), "zh_Hant");
    EXPECT_EQ(languageIn({{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", ""}}), "de");
    EXPECT_EQ(languageIn({{"LANGUAGE", "ja"}}), "ja");
}

TEST(UserLanguages, AreNotThoseOfTheListInTheLocaleC)
{
    EXPECT_EQ(languageIn({{"LC_ALL", "C"}, {"LANGUAGE", "de"}}), "English");
    EXPECT_EQ(languageIn({{"LANG", "POSIX"}, {"LANGUAGE", "de"}}), "English");
    EXPECT_EQ(languageIn({{"LC_ALL", "fr_FR.UTF-8"}, {"LANG", "C"}, {"LANGUAGE", "de"}}), "de");
}

} // namespace
} // namespace orlimo
