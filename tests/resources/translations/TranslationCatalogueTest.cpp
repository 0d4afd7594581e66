#include "resources/translations/TranslationCatalogue.h"

#include "tests/resources/translations/TranslationSample.h"

#include <QCoreApplication>
#include <QTranslator>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

/// The name of the chosen catalogue; "English" when there is none.
std::string choiceFor(const QStringList& languages)
{
    const auto catalogue = TranslationCatalogue::forLanguages(languages);
    return catalogue ? catalogue->language.toStdString() : "English";
}

TEST(TranslationCatalogue, IsChosenByLanguageAndScript)
{
    const std::map<std::string, std::vector<std::string>> choices{
        {"de", {"de", "de_DE", "de-AT", "de-Latn-CH", "DE-de"}},
        {"fr", {"fr", "fr_CA"}},
        {"es", {"es-MX", "es-419"}},
        {"it", {"it-CH"}},
        {"pt_BR", {"pt", "pt-BR", "pt_PT", "pt-Latn-AO"}},
        {"ja", {"ja", "ja-Jpan-JP"}},
        {"ko", {"ko-KR", "ko_KP"}},
        {"zh_Hans", {"zh", "zh-CN", "zh_SG", "zh-MY", "zh-Hans", "zh_Hans_HK", "zh-Hans-TW"}},
        {"zh_Hant",
         {"zh-TW", "zh_HK", "zh-MO", "zh-Hant", "zh_Hant_TW", "zh-Hant-CN", "ZH-hant", "zh-tw"}},
        {"English",
         {"en",
          "en-US",
          "en_GB",
          "EN",
          "C",
          "POSIX",
          "nl",
          "sv-SE",
          "gsw-CH",
          "nds",
          "",
          "-",
          "xx",
          "d",
          "deu",
          "TW",
          "Hant"}},
    };
    for (const auto& [catalogue, preferred] : choices) {
        for (const std::string& language : preferred) {
            EXPECT_EQ(choiceFor({QString::fromStdString(language)}), catalogue) << language;
        }
    }
    EXPECT_EQ(choiceFor({}), "English");
}

QStringList listOf(std::initializer_list<const char*> languages)
{
    QStringList list;
    for (const char* language : languages) {
        list.append(QLatin1String(language));
    }
    return list;
}

TEST(TranslationCatalogue, FollowsOrderOfUser)
{
    EXPECT_EQ(choiceFor(listOf({"fr", "de"})), "fr");
    EXPECT_EQ(choiceFor(listOf({"nl", "nl-NL", "de", "fr"})), "de");
    EXPECT_EQ(choiceFor(listOf({"nl", "en", "de"})), "English");
    EXPECT_EQ(choiceFor(listOf({"en-AU", "de"})), "English");
    EXPECT_EQ(choiceFor(listOf({"nl", "sv"})), "English");
    EXPECT_EQ(choiceFor(listOf({"zh-HK", "zh-Hant-HK", "zh-CN"})), "zh_Hant");
    EXPECT_EQ(choiceFor(listOf({"ca-ES-valencia", "ca", "es"})), "es");
    // As Qt lists a language that it does not know itself.
    EXPECT_EQ(choiceFor(listOf({"xx", "C", "ja"})), "ja");
}

TEST(TranslationCatalogue, NamesCatalogueOfQt)
{
    for (const auto& [language, name] :
         {std::pair("de", "de"),
          std::pair("pt", "pt_BR"),
          std::pair("zh_Hans_HK", "zh_CN"),
          std::pair("zh_HK", "zh_TW")})
    {
        const auto catalogue = TranslationCatalogue::forLanguages({QLatin1String(language)});
        ASSERT_TRUE(catalogue) << language;
        EXPECT_EQ(catalogue->qtLanguage, QLatin1String(name)) << language;
    }
}

/// Brings back English at the end of a test.
class TranslationInstallation : public testing::Test
{
protected:
    ~TranslationInstallation() override
    {
        installTranslations(*QCoreApplication::instance(), {QStringLiteral("en")});
    }
};

TEST_F(TranslationInstallation, TranslatesProgramAndQt)
{
    for (const auto& [language, words] : translationSamplesByLanguage) {
        installTranslations(*QCoreApplication::instance(), {QString::fromStdString(language)});
        EXPECT_EQ(translationSample(), words) << language;
    }
}

TEST_F(TranslationInstallation, ReplacesEarlierOne)
{
    QCoreApplication& application = *QCoreApplication::instance();
    const auto before = application.findChildren<QTranslator*>().size();
    installTranslations(application, {QStringLiteral("de")});
    installTranslations(application, {QStringLiteral("ja")});
    EXPECT_EQ(application.findChildren<QTranslator*>().size(), before + 2);
    EXPECT_EQ(translationSample(), translationSamplesByLanguage.at("ja"));
    installTranslations(application, {QStringLiteral("en")});
    EXPECT_EQ(application.findChildren<QTranslator*>().size(), before);
    EXPECT_EQ(translationSample(), translationSamplesByLanguage.at("English"));
}

} // namespace
} // namespace orlimo
