#include "platform/ApplicationIdentity.h"
#include "tests/packaging/macos/PropertyList.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::filesystem::path entitlements = ORLIMO_SOURCES "/packaging/macos/Orlimo.entitlements";

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

class InfoPlist : public testing::Test
{
protected:
    [[nodiscard]] bool isTrue(const char* key) const
    {
        const QVariant value = list.values().value(QLatin1String(key));
        return value.typeId() == QMetaType::Bool && value.toBool();
    }

    const PropertyList list{ORLIMO_INFO_PLIST};
};

TEST_F(InfoPlist, SaysWhoTheProgramIs)
{
    EXPECT_EQ(list.text("CFBundleIdentifier"), identity::applicationIdentifier);
    EXPECT_EQ(list.text("CFBundleName"), identity::applicationName);
    EXPECT_EQ(list.text("CFBundleDisplayName"), identity::applicationName);
    EXPECT_EQ(list.text("CFBundleShortVersionString"), identity::version);
    EXPECT_EQ(list.text("CFBundleVersion"), identity::version);
    EXPECT_EQ(list.text("NSHumanReadableCopyright"), identity::copyright);
    EXPECT_EQ(list.text("CFBundlePackageType"), "APPL");
    EXPECT_EQ(list.text("CFBundleInfoDictionaryVersion"), "6.0");
    EXPECT_EQ(list.text("LSApplicationCategoryType"), "public.app-category.utilities");
}

TEST_F(InfoPlist, SaysHowTheProgramRuns)
{
    EXPECT_EQ(list.text("LSMinimumSystemVersion"), "15.0");
    EXPECT_EQ(list.text("NSPrincipalClass"), "NSApplication");
    EXPECT_TRUE(isTrue("NSHighResolutionCapable"));
    // Without an icon in the Dock.
    EXPECT_TRUE(isTrue("LSUIElement"));
    // A start that is one too many finds the first by itself; --side-by-side wants several.
    EXPECT_FALSE(list.values().contains(QStringLiteral("LSMultipleInstancesProhibited")));
    // No permission is asked for in words.
    for (const auto& key : list.values().keys()) {
        EXPECT_FALSE(key.endsWith(QStringLiteral("UsageDescription"))) << key.toStdString();
    }
}

TEST_F(InfoPlist, HasTheLanguagesOfTheCatalogues)
{
    const QStringList texts =
        list.values().value(QStringLiteral("CFBundleLocalizations")).toStringList();
    std::set<std::string> languages;
    for (const auto& text : texts) {
        EXPECT_TRUE(languages.insert(text.toStdString()).second) << text.toStdString();
    }
    EXPECT_EQ(languages, languagesOfCatalogues());
    EXPECT_EQ(list.text("CFBundleDevelopmentRegion"), "en");
}

TEST_F(InfoPlist, HasNothingLeftToFillIn)
{
    const std::string content = contentOf(ORLIMO_INFO_PLIST);
    EXPECT_THAT(content, Not(HasSubstr("@")));
    // What is left of the form ${NAME} would be filled in anew by CMake.
    EXPECT_THAT(content, Not(HasSubstr("$")));
}

TEST(Entitlements, AreNoneAndWithoutACommentThatTheSystemCannotRead)
{
    EXPECT_TRUE(PropertyList(entitlements).values().isEmpty());
    EXPECT_THAT(contentOf(entitlements), Not(HasSubstr("<!--")));
}

} // namespace
} // namespace orlimo
