#include "platform/ApplicationIdentity.h"
#include "tests/packaging/CommandResult.h"
#include "tests/support/TemporaryFolder.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string_view>

namespace orlimo {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const std::filesystem::path entitlements = ORLIMO_SOURCES "/packaging/macos/Orlimo.entitlements";

/// The keys and values of a property list, as a reader of such files understands it.
QVariantMap propertyList(const std::filesystem::path& file)
{
    const auto reading = CommandResult::of(
        "/usr/bin/env",
        {.arguments = {
             "python3",
             "-c",
             "import json, plistlib, sys\n"
             "print(json.dumps(plistlib.load(open(sys.argv[1], 'rb'))))",
             file.string()}});
    EXPECT_EQ(reading.status, 0) << reading.text();
    return QJsonDocument::fromJson(QByteArray::fromStdString(reading.output))
        .object()
        .toVariantMap();
}

std::set<std::string> languagesOfCatalogues()
{
    std::set<std::string> languages{"en"};
    for (const auto& file :
         std::filesystem::directory_iterator(ORLIMO_SOURCES "/resources/translations"))
    {
        if (file.path().extension() == ".ts") {
            std::string language =
                file.path().stem().string().substr(std::string("orlimo_").size());
            std::ranges::replace(language, '_', '-');
            languages.insert(language);
        }
    }
    return languages;
}

TEST(InfoPlist, SaysWhoTheProgramIsAndHowItRuns)
{
    const QVariantMap list = propertyList(ORLIMO_INFO_PLIST);
    const std::map<std::string, std::string_view> texts{
        {"CFBundleDevelopmentRegion", "en"},
        {"CFBundleDisplayName", identity::applicationName},
        {"CFBundleIdentifier", identity::applicationIdentifier},
        {"CFBundleInfoDictionaryVersion", "6.0"},
        {"CFBundleName", identity::applicationName},
        {"CFBundlePackageType", "APPL"},
        {"CFBundleShortVersionString", identity::version},
        {"CFBundleVersion", identity::version},
        {"LSApplicationCategoryType", "public.app-category.utilities"},
        {"LSMinimumSystemVersion", "15.0"},
        {"NSHumanReadableCopyright", identity::copyright},
        {"NSPrincipalClass", "NSApplication"}};
    for (const auto& [key, text] : texts) {
        EXPECT_EQ(list.value(QString::fromStdString(key)).toString().toStdString(), text) << key;
    }
    // LSUIElement: without an icon in the Dock.
    for (const char* key : {"LSUIElement", "NSHighResolutionCapable"}) {
        const QVariant value = list.value(QLatin1String(key));
        EXPECT_TRUE(value.typeId() == QMetaType::Bool && value.toBool()) << key;
    }
    // A start that is one too many finds the first by itself; --side-by-side wants several.
    EXPECT_FALSE(list.contains(QStringLiteral("LSMultipleInstancesProhibited")));
    // No permission is asked for in words.
    for (const auto& key : list.keys()) {
        EXPECT_FALSE(key.endsWith(QStringLiteral("UsageDescription"))) << key.toStdString();
    }
    // A variable ${NAME} that is left would be filled in anew by CMake.
    EXPECT_THAT(contentOf(ORLIMO_INFO_PLIST), AllOf(Not(HasSubstr("@")), Not(HasSubstr("$"))));
}

TEST(InfoPlist, HasTheLanguagesOfTheCatalogues)
{
    const QStringList texts = propertyList(ORLIMO_INFO_PLIST)
                                  .value(QStringLiteral("CFBundleLocalizations"))
                                  .toStringList();
    std::set<std::string> languages;
    for (const auto& text : texts) {
        EXPECT_TRUE(languages.insert(text.toStdString()).second) << text.toStdString();
    }
    EXPECT_EQ(languages, languagesOfCatalogues());
}

TEST(Entitlements, AreNoneAndWithoutACommentThatTheSystemCannotRead)
{
    EXPECT_TRUE(propertyList(entitlements).isEmpty());
    EXPECT_THAT(contentOf(entitlements), Not(HasSubstr("<!--")));
}

} // namespace
} // namespace orlimo
