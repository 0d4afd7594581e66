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

TEST(TranslationCatalogue, IsChosenByLanguage)
{
    const std::vector<std::pair<const char*, const char*>> choices{
        {"de", "de"},
        {"de_DE", "de"},
        {"de-AT", "de"},
        {"de-Latn-CH", "de"},
        {"DE-de", "de"},
        {"fr", "fr"},
        {"fr_CA", "fr"},
        {"es-MX", "es"},
        {"es-419", "es"},
        {"it-CH", "it"},
        {"pt", "pt_BR"},
        {"pt-BR", "pt_BR"},
        {"pt_PT", "pt_BR"},
        {"pt-Latn-AO", "pt_BR"},
        {"ja", "ja"},
        {"ja-Jpan-JP", "ja"},
        {"ko-KR", "ko"},
        {"ko_KP", "ko"},
    };
    for (const auto& [language, catalogue] : choices) {
        EXPECT_EQ(choiceFor({QLatin1String(language)}), catalogue) << language;
    }
}

TEST(TranslationCatalogue, IsChosenByScriptForChinese)
{
    const std::vector<std::pair<const char*, const char*>> choices{
        {"zh", "zh_Hans"},
        {"zh-CN", "zh_Hans"},
        {"zh_SG", "zh_Hans"},
        {"zh-MY", "zh_Hans"},
        {"zh-Hans", "zh_Hans"},
        {"zh-Hans-CN", "zh_Hans"},
        {"zh_Hans_HK", "zh_Hans"},
        {"zh-Hans-TW", "zh_Hans"},
        {"zh-TW", "zh_Hant"},
        {"zh_TW", "zh_Hant"},
        {"zh_HK", "zh_Hant"},
        {"zh-MO", "zh_Hant"},
        {"zh-Hant", "zh_Hant"},
        {"zh_Hant_TW", "zh_Hant"},
        {"zh-Hant-CN", "zh_Hant"},
        {"ZH-hant", "zh_Hant"},
        {"zh-tw", "zh_Hant"},
    };
    for (const auto& [language, catalogue] : choices) {
        EXPECT_EQ(choiceFor({QLatin1String(language)}), catalogue) << language;
    }
}

TEST(TranslationCatalogue, IsAbsentForEnglishAndForWhatIsNotSpoken)
{
    for (const char* language :
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
          "Hant"})
    {
        EXPECT_EQ(choiceFor({QLatin1String(language)}), "English") << language;
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

TEST(TranslationCatalogue, FollowsTheUsersOrder)
{
    EXPECT_EQ(choiceFor(listOf({"fr", "de"})), "fr");
    EXPECT_EQ(choiceFor(listOf({"nl", "nl-NL", "de", "fr"})), "de");
    EXPECT_EQ(choiceFor(listOf({"nl", "en", "de"})), "English");
    EXPECT_EQ(choiceFor(listOf({"en-AU", "de"})), "English");
    EXPECT_EQ(choiceFor(listOf({"de", "en"})), "de");
    EXPECT_EQ(choiceFor(listOf({"nl", "sv"})), "English");
    EXPECT_EQ(choiceFor(listOf({"zh-HK", "zh-Hant-HK", "zh-CN"})), "zh_Hant");
    EXPECT_EQ(choiceFor(listOf({"ca-ES-valencia", "ca", "es"})), "es");
    // As Qt lists a language that it does not know itself.
    EXPECT_EQ(choiceFor(listOf({"xx", "C", "ja"})), "ja");
}

TEST(TranslationCatalogue, NamesTheToolkitsOwn)
{
    const std::map<std::string, std::string> names{
        {"de", "de"},
        {"pt", "pt_BR"},
        {"zh_CN", "zh_CN"},
        {"zh_Hans_HK", "zh_CN"},
        {"zh_TW", "zh_TW"},
        {"zh_HK", "zh_TW"},
    };
    for (const auto& [language, name] : names) {
        const auto catalogue =
            TranslationCatalogue::forLanguages({QString::fromStdString(language)});
        ASSERT_TRUE(catalogue) << language;
        EXPECT_EQ(catalogue->qtLanguage.toStdString(), name) << language;
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

TEST_F(TranslationInstallation, MakesTheProgramAndTheToolkitSpeakTheLanguage)
{
    for (const auto& [language, words] : translationSamplesByLanguage()) {
        installTranslations(*QCoreApplication::instance(), {QString::fromStdString(language)});
        EXPECT_EQ(translationSample(), words) << language;
    }
}

TEST_F(TranslationInstallation, TakesThePlaceOfTheOneBefore)
{
    QCoreApplication& application = *QCoreApplication::instance();
    const auto before = application.findChildren<QTranslator*>().size();
    installTranslations(application, {QStringLiteral("de")});
    installTranslations(application, {QStringLiteral("ja")});
    EXPECT_EQ(application.findChildren<QTranslator*>().size(), before + 2);
    EXPECT_EQ(translationSample(), translationSamplesByLanguage().at("ja"));
    installTranslations(application, {QStringLiteral("en")});
    EXPECT_EQ(application.findChildren<QTranslator*>().size(), before);
    EXPECT_EQ(translationSample(), translationSamplesByLanguage().at("English"));
}

} // namespace
} // namespace orlimo
