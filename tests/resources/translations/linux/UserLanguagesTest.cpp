#include "tests/resources/translations/TranslationSample.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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
    for (const auto& [language, wordsOfLanguage] : translationSamplesByLanguage) {
        if (words == wordsOfLanguage) {
            return language;
        }
    }
    return words;
}

TEST(UserLanguages, ComeFromStrongestVariable)
{
    const std::vector<std::pair<Environment, const char*>> cases{
        {{}, "English"},
        {{{"LANG", "de_DE.UTF-8"}}, "de"},
        {{{"LANG", "de_AT@euro"}}, "de"},
        {{{"LANG", "zh_TW.UTF-8"}}, "zh_Hant"},
        {{{"LANG", "zh_CN.UTF-8"}}, "zh_Hans"},
        {{{"LANG", "nl_NL.UTF-8"}}, "English"},
        {{{"LANG", "C.UTF-8"}}, "English"},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "ja_JP.UTF-8"}}, "ja"},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "ja_JP.UTF-8"}, {"LC_ALL", "fr_FR.UTF-8"}},
         "fr"},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_ALL", ""}}, "de"},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "en_US.UTF-8"}}, "English"},
        {{{"LANG", "en_US.UTF-8"}, {"LANGUAGE", "ko"}}, "ko"},
        {{{"LC_ALL", "en_US.UTF-8"}, {"LANGUAGE", "nl:it:de"}}, "it"},
        {{{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "en_GB:en"}}, "English"},
        {{{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "xx:zh_Hant"}}, "zh_Hant"},
        {{{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", ""}}, "de"},
        {{{"LANGUAGE", "ja"}}, "ja"},
        // The locale C has no list.
        {{{"LC_ALL", "C"}, {"LANGUAGE", "de"}}, "English"},
        {{{"LANG", "POSIX"}, {"LANGUAGE", "de"}}, "English"},
        {{{"LC_ALL", "fr_FR.UTF-8"}, {"LANG", "C"}, {"LANGUAGE", "de"}}, "de"},
    };
    for (const auto& [environment, language] : cases) {
        EXPECT_EQ(languageIn(environment), language) << testing::PrintToString(environment);
    }
}

} // namespace
} // namespace orlimo
