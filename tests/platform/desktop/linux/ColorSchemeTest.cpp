#include "platform/desktop/linux/ColorSchemePortal.h"
#include "platform/desktop/linux/PaletteScheme.h"
#include "resources/Contrast.h"
#include "tests/platform/loginitem/linux/ScriptedPortal.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/MessageBus.h"
#include "tests/support/widgets/Palettes.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QPalette>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using enum ColorScheme;

const auto clientName = QStringLiteral("client");
const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto colorScheme = QStringLiteral("color-scheme");

/// The preference, read on a private bus from a fake portal.
class ColorSchemePortalTest : public testing::Test
{
protected:
    ColorSchemePortalTest()
    {
        QDBusConnection::connectToBus(QString::fromStdString(bus.address()), clientName);
        portal.emplace(bus.address());
    }

    ~ColorSchemePortalTest() override
    {
        preference.reset();
        QDBusConnection::disconnectFromBus(clientName);
    }

    void read()
    {
        preference.emplace(QDBusConnection(clientName), [this](ColorScheme scheme) {
            reported.push_back(scheme);
        });
    }

    [[nodiscard]] bool awaitReported(std::size_t count) const
    {
        return await([&] { return reported.size() >= count; });
    }

    TemporaryFolder folder;
    MessageBus bus{folder.path()};
    std::optional<ScriptedPortal> portal;
    std::optional<ColorSchemePortal> preference;
    std::vector<ColorScheme> reported;
};

TEST_F(ColorSchemePortalTest, ReportsEachChange)
{
    portal->setColorScheme(0U);
    read();
    ASSERT_TRUE(awaitReported(1));
    EXPECT_EQ(portal->reads(), 1);
    for (const uint number : {1U, 2U, 0U, 7U}) {
        portal->changeColorScheme(number);
    }
    ASSERT_TRUE(awaitReported(5));
    EXPECT_THAT(reported, ElementsAre(noPreference, dark, light, noPreference, noPreference));
}

TEST_F(ColorSchemePortalTest, IgnoresOtherTypesSettingsAndSenders)
{
    portal->setColorScheme(1U);
    read();
    // From here on it knows who sends for the portal.
    ASSERT_TRUE(awaitReported(1));
    for (const QVariant& other : {QVariant(-1), QVariant(true), QVariant(QStringLiteral("dark"))}) {
        portal->changeColorScheme(other);
    }
    portal->sendSettingChanged(appearance, QStringLiteral("contrast"), 2U);
    portal->sendSettingChanged(QStringLiteral("org.example"), colorScheme, 2U);
    const auto name = QStringLiteral("stranger");
    auto stranger = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), name);
    QDBusMessage signal = QDBusMessage::createSignal(
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"),
        QStringLiteral("SettingChanged"));
    signal.setArguments({appearance, colorScheme, QVariant::fromValue(QDBusVariant(2U))});
    stranger.send(signal);
    // Returns when the bus has passed on what was sent before.
    (void)stranger.interface()->isServiceRegistered(name);
    QDBusConnection::disconnectFromBus(name);
    portal->changeColorScheme(0U);
    ASSERT_TRUE(awaitReported(2));
    EXPECT_THAT(reported, ElementsAre(dark, noPreference));
}

TEST_F(ColorSchemePortalTest, ReadsAgainWhenThePortalStartsOrRestarts)
{
    portal.reset();
    read();
    for (std::size_t time = 1; time <= 3; ++time) {
        portal.emplace(bus.address());
        portal->setColorScheme(1U);
        ASSERT_TRUE(awaitReported(2 * time - 1));
        portal->changeColorScheme(2U);
        ASSERT_TRUE(awaitReported(2 * time));
        portal.reset();
    }
    EXPECT_THAT(reported, ElementsAre(dark, light, dark, light, dark, light));
}

TEST_F(ColorSchemePortalTest, WaitsForSlowPortalWithoutBlocking)
{
    portal->setColorScheme(1U);
    portal->holdReads();
    bus.freeze();
    const auto before = std::chrono::steady_clock::now();
    read();
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(1));
    bus.thaw();
    ASSERT_TRUE(await([this] { return portal->reads() == 1; }));
    EXPECT_THAT(reported, IsEmpty());
    portal->replyToReads();
    ASSERT_TRUE(awaitReported(1));
    EXPECT_THAT(reported, ElementsAre(dark));
}

TEST_F(ColorSchemePortalTest, ReportsNothingWithoutABus)
{
    bus.end();
    read();
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_THAT(reported, IsEmpty());
}

class PaletteSchemeTest : public testing::Test
{
protected:
    const PaletteChange ownOfQt{QPalette()};
    const QPalette before = QApplication::palette();
    PaletteScheme scheme;
};

TEST_F(PaletteSchemeTest, IsDarkOnlyIfDarkIsPreferred)
{
    for (const ColorScheme other : {noPreference, light}) {
        scheme.follow(other);
        EXPECT_EQ(QApplication::palette(), before);
        scheme.follow(dark);
        EXPECT_LT(QApplication::palette().color(QPalette::Window).lightness(), 60);
        EXPECT_GT(QApplication::palette().color(QPalette::WindowText).lightness(), 200);
        scheme.follow(dark);
        scheme.follow(other);
        EXPECT_EQ(QApplication::palette(), before);
    }
}

TEST_F(PaletteSchemeTest, ChosenPaletteIsLeftAlone)
{
    for (const QPalette& chosen : {lightPalette(), darkPalette()}) {
        const PaletteChange change(chosen);
        for (const ColorScheme wanted : {dark, light, noPreference}) {
            scheme.follow(wanted);
            EXPECT_EQ(
                QApplication::palette().color(QPalette::Window), chosen.color(QPalette::Window));
        }
    }
}

TEST_F(PaletteSchemeTest, DarkTextIsLegibleAndTheAccentKept)
{
    const QPalette palette = darkPaletteOf(before);
    for (const auto& [text, ground] :
         {std::pair(QPalette::WindowText, QPalette::Window),
          std::pair(QPalette::Text, QPalette::Base),
          std::pair(QPalette::Text, QPalette::AlternateBase),
          std::pair(QPalette::ButtonText, QPalette::Button),
          std::pair(QPalette::ToolTipText, QPalette::ToolTipBase),
          std::pair(QPalette::PlaceholderText, QPalette::Base),
          std::pair(QPalette::Link, QPalette::Base),
          std::pair(QPalette::LinkVisited, QPalette::Base)})
    {
        EXPECT_GE(contrastRatio(palette.color(text), palette.color(ground)), 4.5) << text;
    }
    EXPECT_EQ(palette.color(QPalette::Highlight), before.color(QPalette::Highlight));
}

} // namespace
} // namespace orlimo
