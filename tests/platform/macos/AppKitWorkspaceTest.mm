#include "platform/ApplicationIdentity.h"
#include "platform/ToQString.h"
#include "platform/Workspace.h"
#include "tests/platform/macos/standins/ScriptedAppKit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

class AppKitWorkspaceTest : public testing::Test
{
protected:
    AppKitWorkspaceTest() { scriptedAppKit() = {}; }
};

TEST_F(AppKitWorkspaceTest, OpensAnAddress)
{
    const QUrl website(toQString(identity::website));
    EXPECT_TRUE(openUrl(website));
    EXPECT_THAT(
        scriptedAppKit().openedAddresses, testing::ElementsAre(std::string(identity::website)));
}

TEST_F(AppKitWorkspaceTest, OpensASettingsPageAndOddCharacters)
{
    const std::string page =
        "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";
    EXPECT_TRUE(openUrl(QUrl(toQString(page))));
    EXPECT_TRUE(openUrl(QUrl(QStringLiteral("https://example.org/\u00fc b"))));
    EXPECT_THAT(
        scriptedAppKit().openedAddresses,
        testing::ElementsAre(page, "https://example.org/%C3%BC%20b"));
}

TEST_F(AppKitWorkspaceTest, SaysThatNothingOpensAnAddress)
{
    scriptedAppKit().addressesCanBeOpened = false;
    EXPECT_FALSE(openUrl(QUrl(QStringLiteral("unknown:address"))));
}

} // namespace
} // namespace orlimo
