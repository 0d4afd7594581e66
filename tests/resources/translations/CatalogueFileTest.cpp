#include "tests/resources/translations/CatalogueFile.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

#include <QRegularExpression>
#include <QTranslator>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

namespace orlimo {
namespace {

QStringList placeholdersIn(const QString& text)
{
    QStringList found;
    static const QRegularExpression placeholder(QStringLiteral("%L?[0-9n]+"));
    for (auto match = placeholder.globalMatch(text); match.hasNext();) {
        found.append(match.next().captured());
    }
    found.sort();
    return found;
}

/// The texts for translation in the program's sources: context and English text.
const std::multiset<std::pair<std::string, std::string>>& sourceTexts()
{
    static const auto texts = [] {
        const TemporaryFolder folder;
        const auto extracted = folder.path() / "extracted.ts";
        ChildProcess lupdate(
            ORLIMO_LUPDATE,
            {.arguments = {
                 "-silent",
                 "-I",
                 ORLIMO_SOURCES,
                 ORLIMO_SOURCES "/app",
                 ORLIMO_SOURCES "/controls",
                 ORLIMO_SOURCES "/login",
                 ORLIMO_SOURCES "/platform",
                 "-ts",
                 extracted.string()}});
        EXPECT_EQ(lupdate.awaitEnd().status, 0) << lupdate.errors();
        return CatalogueFile::read(extracted).texts();
    }();
    return texts;
}

TEST(CatalogueFiles, AreThoseOfTheListedLanguages)
{
    std::multiset<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(ORLIMO_CATALOGUE_FOLDER)) {
        if (file.path().extension() == ".ts") {
            names.insert(file.path().stem().string());
        }
    }
    std::multiset<std::string> known;
    for (const std::string& language : catalogueLanguages()) {
        known.insert("orlimo_" + language);
    }
    EXPECT_EQ(names, known);
}

class CatalogueFileOf : public testing::TestWithParam<std::string>
{
protected:
    const CatalogueFile catalogue = CatalogueFile::read(catalogueFileOf(GetParam()));
};

TEST_P(CatalogueFileOf, NamesItsLanguageAndHasEverySourceTextOnceFinished)
{
    const std::string language = catalogue.language.toStdString();
    EXPECT_TRUE(language == GetParam() || language.starts_with(GetParam() + "_")) << language;
    EXPECT_EQ(catalogue.sourceLanguage, QStringLiteral("en"));
    EXPECT_GE(sourceTexts().size(), 18U);
    EXPECT_EQ(catalogue.texts(), sourceTexts());
    for (const auto& entry : catalogue.entries) {
        EXPECT_EQ(entry.type.toStdString(), "") << entry.source.toStdString();
        EXPECT_FALSE(entry.translation.isEmpty()) << entry.source.toStdString();
    }
}

TEST_P(CatalogueFileOf, KeepsPlaceholdersNameAndPunctuation)
{
    for (const auto& entry : catalogue.entries) {
        const std::string translation = entry.translation.toStdString();
        EXPECT_EQ(placeholdersIn(entry.translation), placeholdersIn(entry.source)) << translation;
        if (entry.source.contains(u"Orlimo")) {
            EXPECT_THAT(translation, testing::HasSubstr("Orlimo"));
        }
        EXPECT_EQ(entry.translation, entry.translation.simplified())
            << "needless white space: " << translation;
        const bool isSentence =
            entry.translation.endsWith(u'.') || entry.translation.endsWith(u'\u3002');
        EXPECT_EQ(isSentence, entry.source.endsWith(u'.')) << translation;
    }
}

TEST_P(CatalogueFileOf, IsCompiledIntoProgramUnchanged)
{
    QTranslator translator;
    ASSERT_TRUE(translator.load(
        QStringLiteral(":/translations/orlimo_") + QString::fromStdString(GetParam())));
    for (const auto& entry : catalogue.entries) {
        EXPECT_EQ(
            translator
                .translate(entry.context.toUtf8().constData(), entry.source.toUtf8().constData())
                .toStdString(),
            entry.translation.toStdString());
    }
}

INSTANTIATE_TEST_SUITE_P(
    EveryLanguage, CatalogueFileOf, testing::ValuesIn(catalogueLanguages()), [](const auto& suite) {
        return suite.param;
    });

} // namespace
} // namespace orlimo
