#include "tests/resources/translations/CatalogueFile.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/widgets/QtPrinting.h"

#include <QRegularExpression>
#include <QTranslator>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

QStringList placeholdersIn(const QString& text)
{
    static const QRegularExpression placeholder(QStringLiteral("%L?[0-9n]+"));
    QStringList found;
    for (const auto& match : placeholder.globalMatch(text)) {
        found.append(match.captured());
    }
    found.sort();
    return found;
}

/// What there are translations of: context and English text.
std::multiset<std::pair<QString, QString>> textsOf(const std::vector<CatalogueEntry>& entries)
{
    std::multiset<std::pair<QString, QString>> texts;
    for (const CatalogueEntry& entry : entries) {
        texts.emplace(entry.context, entry.source);
    }
    return texts;
}

/// The texts for translation in the program's sources.
const std::multiset<std::pair<QString, QString>>& sourceTexts()
{
    static const auto texts = [] {
        const TemporaryFolder folder;
        const auto extracted = folder.path() / "extracted.ts";
        std::vector<std::string> arguments{"-silent", "-I", ORLIMO_SOURCES};
        for (const char* module : {"app", "controls", "login", "platform"}) {
            arguments.push_back(std::string(ORLIMO_SOURCES "/") + module);
        }
        arguments.insert(arguments.end(), {"-ts", extracted.string()});
        ChildProcess lupdate(ORLIMO_LUPDATE, {.arguments = arguments});
        EXPECT_EQ(lupdate.awaitEnd().status, 0) << lupdate.errors();
        return textsOf(readCatalogue(extracted));
    }();
    return texts;
}

TEST(CatalogueFiles, AreThoseOfTheListedLanguages)
{
    std::set<std::filesystem::path> files;
    for (const auto& file : std::filesystem::directory_iterator(ORLIMO_CATALOGUE_FOLDER)) {
        if (file.path().extension() == ".ts") {
            files.insert(file.path());
        }
    }
    std::set<std::filesystem::path> known;
    for (const std::string& language : catalogueLanguages()) {
        known.insert(catalogueFileOf(language));
    }
    EXPECT_EQ(files, known);
}

class CatalogueFileOf : public testing::TestWithParam<std::string>
{
protected:
    const std::vector<CatalogueEntry> entries = readCatalogue(catalogueFileOf(GetParam()));
};

TEST_P(CatalogueFileOf, HasEverySourceTextOnceFinished)
{
    EXPECT_GE(sourceTexts().size(), 18U);
    EXPECT_EQ(textsOf(entries), sourceTexts());
    for (const CatalogueEntry& entry : entries) {
        EXPECT_EQ(entry.type, QString()) << entry.source.toStdString();
        EXPECT_FALSE(entry.translation.isEmpty()) << entry.source.toStdString();
    }
}

TEST_P(CatalogueFileOf, KeepsPlaceholdersNameAndPunctuation)
{
    for (const CatalogueEntry& entry : entries) {
        const QString& translation = entry.translation;
        SCOPED_TRACE(translation.toStdString());
        EXPECT_EQ(placeholdersIn(translation), placeholdersIn(entry.source));
        EXPECT_TRUE(translation.contains(u"Orlimo") || !entry.source.contains(u"Orlimo"));
        EXPECT_EQ(translation, translation.simplified()) << "needless white space";
        const bool isSentence = translation.endsWith(u'.') || translation.endsWith(u'\u3002');
        EXPECT_EQ(isSentence, entry.source.endsWith(u'.'));
    }
}

TEST_P(CatalogueFileOf, IsCompiledIntoProgramUnchanged)
{
    QTranslator translator;
    ASSERT_TRUE(translator.load(
        QStringLiteral(":/translations/orlimo_") + QString::fromStdString(GetParam())));
    for (const CatalogueEntry& entry : entries) {
        EXPECT_EQ(
            translator.translate(
                entry.context.toUtf8().constData(), entry.source.toUtf8().constData()),
            entry.translation);
    }
}

INSTANTIATE_TEST_SUITE_P(
    EveryLanguage, CatalogueFileOf, testing::ValuesIn(catalogueLanguages()), [](const auto& suite) {
        return suite.param;
    });

} // namespace
} // namespace orlimo
