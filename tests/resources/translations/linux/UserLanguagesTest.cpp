#include "tests/resources/translations/TranslationSample.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

namespace orlimo {
namespace {

/// The language of a program that is started with these of the variables that choose it, each as in
/// "LANG=de".
std::string languageIn(const std::string& variables)
{
    std::map<std::string, std::optional<std::string>> environment{
        {"LANGUAGE", {}}, {"LC_ALL", {}}, {"LC_MESSAGES", {}}, {"LANG", {}}};
    std::istringstream assignments(variables);
    for (std::string assignment; assignments >> assignment;) {
        const auto sign = assignment.find('=');
        environment[assignment.substr(0, sign)] = assignment.substr(sign + 1);
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
    for (const auto& [variables, language] :
         {std::pair("", "English"),
          std::pair("LANG=de_DE.UTF-8", "de"),
          std::pair("LANG=de_AT@euro", "de"),
          std::pair("LANG=zh_TW.UTF-8", "zh_Hant"),
          std::pair("LANG=zh_CN.UTF-8", "zh_Hans"),
          std::pair("LANG=nl_NL.UTF-8", "English"),
          std::pair("LANG=C.UTF-8", "English"),
          std::pair("LANG=de_DE.UTF-8 LC_MESSAGES=ja_JP.UTF-8", "ja"),
          std::pair("LANG=de_DE.UTF-8 LC_MESSAGES=ja_JP.UTF-8 LC_ALL=fr_FR.UTF-8", "fr"),
          std::pair("LANG=de_DE.UTF-8 LC_ALL=", "de"),
          std::pair("LANG=de_DE.UTF-8 LC_MESSAGES=en_US.UTF-8", "English"),
          std::pair("LANG=en_US.UTF-8 LANGUAGE=ko", "ko"),
          std::pair("LC_ALL=en_US.UTF-8 LANGUAGE=nl:it:de", "it"),
          std::pair("LANG=de_DE.UTF-8 LANGUAGE=en_GB:en", "English"),
          std::pair("LANG=de_DE.UTF-8 LANGUAGE=xx:zh_Hant", "zh_Hant"),
          std::pair("LANG=de_DE.UTF-8 LANGUAGE=", "de"),
          std::pair("LANGUAGE=ja", "ja"),
          // The locale C has no list.
          std::pair("LC_ALL=C LANGUAGE=de", "English"),
          std::pair("LANG=POSIX LANGUAGE=de", "English"),
          std::pair("LC_ALL=fr_FR.UTF-8 LANG=C LANGUAGE=de", "de")})
    {
        EXPECT_EQ(languageIn(variables), language) << variables;
    }
}

} // namespace
} // namespace orlimo
