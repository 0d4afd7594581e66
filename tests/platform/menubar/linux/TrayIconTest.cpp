#include "platform/menubar/linux/TrayIcon.h"

#include "tests/platform/desktop/MarkingTranslator.h"
#include "tests/support/ManualClock.h"

#include <QApplication>
#include <QMenu>
#include <QPixmap>
#include <QStringList>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

QIcon anyIcon()
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::black);
    return QIcon(pixmap);
}

std::chrono::milliseconds doubleClickInterval()
{
    return std::chrono::milliseconds(QApplication::doubleClickInterval());
}

class TrayIconTest : public testing::Test
{
protected:
    QSystemTrayIcon& qtTrayIcon() { return *icon.findChild<QSystemTrayIcon*>(); }

    void activate(QSystemTrayIcon::ActivationReason reason)
    {
        Q_EMIT qtTrayIcon().activated(reason);
    }

    std::vector<std::string> asked;
    ManualClock clock;
    TrayIcon icon{
        anyIcon(),
        {.toggle = [this] { asked.emplace_back("toggle"); },
         .open = [this] { asked.emplace_back("open"); },
         .quit = [this] { asked.emplace_back("quit"); }},
        clock.function()};
    const std::vector<std::string> once{"toggle"};
    const std::vector<std::string> twice{"toggle", "toggle"};
};

TEST_F(TrayIconTest, IsShownAndSaysWhoItIs)
{
    EXPECT_TRUE(qtTrayIcon().isVisible());
    EXPECT_EQ(qtTrayIcon().toolTip(), QStringLiteral("Orlimo"));
    EXPECT_EQ(qtTrayIcon().icon().availableSizes(), QList<QSize>{QSize(16, 16)});
}

TEST_F(TrayIconTest, TogglesAtAClick)
{
    activate(QSystemTrayIcon::Trigger);
    EXPECT_EQ(asked, once);
    clock.advance(doubleClickInterval() + 1ms);
    activate(QSystemTrayIcon::Trigger);
    EXPECT_EQ(asked, twice);
}

TEST_F(TrayIconTest, TogglesOnceAtADoubleClickThatComesAsTwoClicks)
{
    activate(QSystemTrayIcon::Trigger);
    clock.advance(doubleClickInterval());
    activate(QSystemTrayIcon::Trigger);
    EXPECT_EQ(asked, once);
    activate(QSystemTrayIcon::Trigger);
    EXPECT_EQ(asked, twice);
}

TEST_F(TrayIconTest, TogglesAtAMiddleClick)
{
    activate(QSystemTrayIcon::MiddleClick);
    EXPECT_EQ(asked, once);
    activate(QSystemTrayIcon::MiddleClick);
    EXPECT_EQ(asked, twice);
}

TEST_F(TrayIconTest, TogglesAtADoubleClickThatComesAlone)
{
    activate(QSystemTrayIcon::DoubleClick);
    EXPECT_EQ(asked, once);
    activate(QSystemTrayIcon::DoubleClick);
    EXPECT_EQ(asked, twice);
}

TEST_F(TrayIconTest, TogglesOnceAtADoubleClickThatComesInTwoParts)
{
    activate(QSystemTrayIcon::Trigger);
    clock.advance(doubleClickInterval());
    activate(QSystemTrayIcon::DoubleClick);
    EXPECT_EQ(asked, once);
}

TEST_F(TrayIconTest, TogglesTwiceAtAClickAndALaterDoubleClick)
{
    activate(QSystemTrayIcon::Trigger);
    clock.advance(doubleClickInterval() + 1ms);
    activate(QSystemTrayIcon::DoubleClick);
    EXPECT_EQ(asked, twice);
}

TEST_F(TrayIconTest, TakesOneDoubleClickForPartOfAClick)
{
    activate(QSystemTrayIcon::Trigger);
    activate(QSystemTrayIcon::DoubleClick);
    activate(QSystemTrayIcon::DoubleClick);
    EXPECT_EQ(asked, twice);
}

TEST_F(TrayIconTest, TakesTheDoubleClickAfterAMiddleClickForItself)
{
    activate(QSystemTrayIcon::MiddleClick);
    activate(QSystemTrayIcon::DoubleClick);
    EXPECT_EQ(asked, twice);
}

TEST(TrayIconWithSlowWork, KnowsTheSecondPressThatHadToWait)
{
    ManualClock clock;
    int toggles = 0;
    TrayIcon icon(
        anyIcon(),
        {.toggle =
             [&] {
                 ++toggles;
                 clock.advance(10s);
             },
         .open = [] {},
         .quit = [] {}},
        clock.function());
    auto& qtTrayIcon = *icon.findChild<QSystemTrayIcon*>();
    Q_EMIT qtTrayIcon.activated(QSystemTrayIcon::Trigger);
    Q_EMIT qtTrayIcon.activated(QSystemTrayIcon::DoubleClick);
    EXPECT_EQ(toggles, 1);
}

TEST_F(TrayIconTest, LeavesTheMenuToTheHost)
{
    activate(QSystemTrayIcon::Context);
    activate(QSystemTrayIcon::Unknown);
    EXPECT_TRUE(asked.empty());
}

TEST_F(TrayIconTest, HasAMenuThatOpensAndQuits)
{
    const auto actions = qtTrayIcon().contextMenu()->actions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions.at(0)->text(), QStringLiteral("Open Orlimo"));
    EXPECT_EQ(actions.at(1)->text(), QStringLiteral("Quit"));
    actions.at(0)->trigger();
    EXPECT_EQ(asked, std::vector<std::string>{"open"});
    actions.at(1)->trigger();
    EXPECT_EQ(asked, (std::vector<std::string>{"open", "quit"}));
}

TEST(TrayIconOfATemplate, IsPaintedInTheColorThatTheTrayPublishes)
{
    QIcon shape = anyIcon();
    shape.setIsMask(true);
    TrayIcon icon(shape, {.toggle = [] {}, .open = [] {}, .quit = [] {}}, currentUptime);
    const auto shown = [&icon] {
        const auto& qtTrayIcon = *icon.findChild<QSystemTrayIcon*>();
        return qtTrayIcon.icon().pixmap(QSize(16, 16), 1).toImage().pixelColor(8, 8);
    };
    const QColor before = shown();
    icon.setTextColor(QColor(200, 40, 90));
    EXPECT_EQ(shown(), QColor(200, 40, 90));
    icon.setTextColor(std::nullopt);
    EXPECT_EQ(shown(), before);
}

TEST_F(TrayIconTest, SaysNothingOfItsPlaceWhereThereIsNoTray)
{
    EXPECT_EQ(icon.geometry(), std::nullopt);
}

TEST(TrayIconInAnotherLanguage, HasATranslatedMenu)
{
    const MarkingTranslator translator;
    TrayIcon icon(anyIcon(), {.toggle = [] {}, .open = [] {}, .quit = [] {}}, currentUptime);
    const auto actions = icon.findChild<QSystemTrayIcon*>()->contextMenu()->actions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions.at(0)->text(), QStringLiteral("MenuBarExtra: Open Orlimo"));
    EXPECT_EQ(actions.at(1)->text(), QStringLiteral("MenuBarExtra: Quit"));
}

} // namespace
} // namespace orlimo
