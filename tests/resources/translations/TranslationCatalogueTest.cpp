#include "resources/translations/TranslationCatalogue.h"

#include "tests/resources/translations/TranslationSample.h"

#include <QCoreApplication>
#include <QTranslator>
#include <gtest/gtest.h>

#include <string>
#include <utility>

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
    for (const auto& [catalogue, languages] :
         {std::pair("de", "de de_DE de-AT de-Latn-CH DE-de"),
          std::pair("fr", "fr fr_CA"),
          std::pair("es", "es-MX es-419"),
          std::pair("it", "it-CH"),
          std::pair("pt_BR", "pt pt-BR pt_PT pt-Latn-AO"),
          std::pair("ja", "ja ja-Jpan-JP"),
          std::pair("ko", "ko-KR ko_KP"),
          std::pair("zh_Hans", "zh zh-CN zh_SG zh-MY zh-Hans zh_Hans_HK zh-Hans-TW"),
          std::pair("zh_Hant", "zh-TW zh_HK zh-MO zh-Hant zh_Hant_TW zh-Hant-CN ZH-hant zh-tw"),
          std::pair("English", "en en-US en_GB EN C POSIX nl sv-SE gsw-CH nds - xx d deu TW Hant")})
    {
        for (const QString& language : QString::fromLatin1(languages).split(u' ')) {
            EXPECT_EQ(choiceFor({language}), catalogue) << language.toStdString();
        }
    }
    EXPECT_EQ(choiceFor({QString()}), "English");
    EXPECT_EQ(choiceFor({}), "English");
}

TEST(TranslationCatalogue, FollowsOrderOfUser)
{
    for (const auto& [languages, catalogue] :
         {std::pair("fr de", "fr"),
          std::pair("nl nl-NL de fr", "de"),
          std::pair("nl en de", "English"),
          std::pair("en-AU de", "English"),
          std::pair("nl sv", "English"),
          std::pair("zh-HK zh-Hant-HK zh-CN", "zh_Hant"),
          std::pair("ca-ES-valencia ca es", "es"),
          // As Qt lists a language that it does not know itself.
          std::pair("xx C ja", "ja")})
    {
        EXPECT_EQ(choiceFor(QString::fromLatin1(languages).split(u' ')), catalogue) << languages;
    }
}

TEST(Translations, OfProgramAndQtReplaceEarlierOnes)
{
    QCoreApplication& application = *QCoreApplication::instance();
    const auto translators = [&] { return application.findChildren<QTranslator*>().size(); };
    const auto before = translators();
    for (const auto& [language, words] : translationSamplesByLanguage) {
        installTranslations(application, {QString::fromStdString(language)});
        EXPECT_EQ(translationSample(), words) << language;
        EXPECT_EQ(translators(), language == "English" ? before : before + 2) << language;
    }
    installTranslations(application, {QStringLiteral("en")});
    EXPECT_EQ(translators(), before);
    EXPECT_EQ(translationSample(), translationSamplesByLanguage.at("English"));
}

} // namespace
} // namespace orlimo
