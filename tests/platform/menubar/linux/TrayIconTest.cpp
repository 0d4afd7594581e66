#include "platform/menubar/linux/TrayIcon.h"

#include "tests/platform/desktop/MarkingTranslator.h"
#include "tests/support/ManualClock.h"

#include <QApplication>
#include <QMenu>
#include <QPixmap>
#include <QStringList>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using Reason = QSystemTrayIcon::ActivationReason;

QIcon blackTemplate()
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::black);
    QIcon icon(pixmap);
    icon.setIsMask(true);
    return icon;
}

class TrayIconTest : public testing::Test
{
protected:
    QSystemTrayIcon& qtTrayIcon() { return *icon.findChild<QSystemTrayIcon*>(); }

    const MarkingTranslator translator;
    std::vector<std::string> requests;
    ManualClock clock;
    std::chrono::milliseconds workDuration{0};
    TrayIcon icon{
        blackTemplate(),
        {.toggle =
             [this] {
                 requests.emplace_back("toggle");
                 clock.advance(workDuration);
             },
         .open = [this] { requests.emplace_back("open"); },
         .quit = [this] { requests.emplace_back("quit"); }},
        clock.function()};
};

TEST_F(TrayIconTest, TogglesOnceForEachClickOrDoubleClick)
{
    const std::chrono::milliseconds limit(QApplication::doubleClickInterval());
    using Press = std::pair<Reason, std::chrono::milliseconds>;
    constexpr auto click = QSystemTrayIcon::Trigger;
    constexpr auto doubleClick = QSystemTrayIcon::DoubleClick;
    constexpr auto middleClick = QSystemTrayIcon::MiddleClick;
    for (const auto& [presses, toggles] : std::vector<std::pair<std::vector<Press>, std::size_t>>{
             {{{click, 0ms}}, 1},
             {{{click, 0ms}, {click, limit + 1ms}}, 2},
             // A double click reported as two clicks, alone, and together with its first click.
             {{{click, 0ms}, {click, limit}}, 1},
             {{{click, 0ms}, {click, limit}, {click, 0ms}}, 2},
             {{{doubleClick, 0ms}, {doubleClick, 0ms}}, 2},
             {{{click, 0ms}, {doubleClick, limit}}, 1},
             {{{click, 0ms}, {doubleClick, limit + 1ms}}, 2},
             {{{click, 0ms}, {doubleClick, 0ms}, {doubleClick, 0ms}}, 2},
             {{{middleClick, 0ms}, {middleClick, 0ms}}, 2},
             {{{middleClick, 0ms}, {doubleClick, 0ms}}, 2},
             {{{QSystemTrayIcon::Context, 0ms}, {QSystemTrayIcon::Unknown, 0ms}}, 0}})
    {
        requests.clear();
        clock.advance(1min);
        for (const auto& [reason, delay] : presses) {
            clock.advance(delay);
            Q_EMIT qtTrayIcon().activated(reason);
        }
        EXPECT_EQ(requests, std::vector<std::string>(toggles, "toggle")) << presses.size();
    }
    workDuration = 10s;
    requests.clear();
    clock.advance(1min);
    Q_EMIT qtTrayIcon().activated(click);
    Q_EMIT qtTrayIcon().activated(doubleClick);
    EXPECT_EQ(requests.size(), 1U) << "the first press was still being handled";
}

TEST_F(TrayIconTest, HasANameAndATranslatedMenuThatOpensAndQuits)
{
    EXPECT_TRUE(qtTrayIcon().isVisible());
    EXPECT_EQ(qtTrayIcon().toolTip(), QStringLiteral("Orlimo"));
    EXPECT_EQ(icon.geometry(), std::nullopt) << "there is no tray";
    const auto actions = qtTrayIcon().contextMenu()->actions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions.at(0)->text(), QStringLiteral("MenuBarExtra: Open Orlimo"));
    EXPECT_EQ(actions.at(1)->text(), QStringLiteral("MenuBarExtra: Quit"));
    actions.at(0)->trigger();
    actions.at(1)->trigger();
    EXPECT_EQ(requests, (std::vector<std::string>{"open", "quit"}));
}

TEST_F(TrayIconTest, TemplateIsPaintedInTheColorThatTheTrayPublishes)
{
    const auto color = [this] {
        return qtTrayIcon().icon().pixmap(QSize(16, 16), 1).toImage().pixelColor(8, 8);
    };
    const QColor before = color();
    icon.setTextColor(QColor(200, 40, 90));
    EXPECT_EQ(color(), QColor(200, 40, 90));
    icon.setTextColor(std::nullopt);
    EXPECT_EQ(color(), before);
}

} // namespace
} // namespace orlimo
