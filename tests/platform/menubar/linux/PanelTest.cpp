#include "tests/desktop/sessions/StatusNotifierPanel.h"
#include "tests/platform/desktop/linux/DesktopProbeTest.h"
#include "tests/support/TemporaryFolder.h"

#include <QPoint>
#include <QRect>
#include <gtest/gtest.h>

#include <array>
#include <chrono>

namespace orlimo {
namespace {

/// The icon in a panel that shows status notifier items and does not report the icon's position.
class PanelTest : public DesktopProbeTest
{
protected:
    PanelTest()
        : DesktopProbeTest(DesktopSession::WithoutTray{})
    {}

    void startWithPanel()
    {
        panel.emplace(desktop);
        startProgram();
        ASSERT_TRUE(panel->awaitItem());
    }

    void openByPanel()
    {
        panel->click();
        ASSERT_TRUE(awaitActive("Content"));
    }

    /// Opens the window with a click on the item and closes it with another one.
    void use()
    {
        openByPanel();
        runEventLoop(focusSettleTime);
        panel->click();
        EXPECT_TRUE(awaitClosed());
        runEventLoop(focusSettleTime);
        EXPECT_FALSE(window("Content"));
    }

    std::optional<StatusNotifierPanel> panel;
};

TEST_F(PanelTest, ItemAppearsWhenAHostIsRegistered)
{
    panel.emplace(desktop, StatusNotifierPanel::Host::absent);
    startProgram();
    runEventLoop(focusSettleTime);
    EXPECT_EQ(panel->items(), 0);
    panel->registerHost();
    ASSERT_TRUE(panel->awaitItem());
    use();
}

TEST_F(PanelTest, ItemStaysWhenTheHostIsRegisteredAgain)
{
    startWithPanel();
    use();
    panel->unregisterHost();
    panel->registerHost();
    EXPECT_TRUE(panel->awaitItem());
    use();
}

TEST_F(PanelTest, ItemAppearsWithEachNewPanel)
{
    startProgram();
    for (int round = 0; round < 3; ++round) {
        runEventLoop(focusSettleTime);
        EXPECT_TRUE(isWindowReported(false));
        panel.emplace(desktop);
        ASSERT_TRUE(panel->awaitItem()) << round;
        use();
        panel.reset();
    }
}

TEST_F(PanelTest, FrozenPanelDoesNotBlockTheProgram)
{
    // Less than the timeout of a call on the bus.
    constexpr std::chrono::seconds limit(15);
    panel.emplace(desktop);
    panel->freeze();
    desktop.startTray({});
    launchProgram();
    ASSERT_TRUE(program->awaitLine("did finish launching", limit));
    program->writeLine("open where there is no icon");
    ASSERT_TRUE(program->awaitLine("opened", limit));
    EXPECT_TRUE(isWindowReported(true));
    panel->thaw();
    EXPECT_TRUE(panel->awaitItem());
}

TEST_F(PanelTest, IconAppearsInTheTrayWhenAFrozenPanelEnds)
{
    panel.emplace(desktop);
    panel->freeze();
    startProgram();
    desktop.startTray({});
    desktop.awaitTray();
    panel.reset();
    EXPECT_TRUE(awaitIcon());
}

TEST_F(PanelTest, WindowDoesNotOpenByItself)
{
    startWithPanel();
    sendCommand("open where there is no icon");
    runEventLoop(std::chrono::milliseconds(1500));
    EXPECT_EQ(count("opened"), 0);
}

TEST_F(PanelTest, WindowOpensByItselfWhileThePanelIsGone)
{
    startWithPanel();
    panel.reset();
    desktop.startTray({});
    desktop.awaitTray();
    // The icon of a panel does not move to a tray, so that the program would be invisible.
    ASSERT_TRUE(awaitWithPolling([this] {
        sendCommand("open where there is no icon");
        return window("Content").has_value();
    }));
    EXPECT_TRUE(awaitActive("Content"));
}

TEST_F(PanelTest, WindowOpensAtThePointerInsideTheScreen)
{
    startWithPanel();
    const std::array<std::pair<QPoint, QPoint>, 5> places{{
        {{0, 0}, {0, 1}},
        {{1279, 0}, {980, 1}},
        {{0, 799}, {0, 259}},
        {{1279, 799}, {980, 259}},
        {{700, 10}, {550, 11}},
    }};
    for (const auto& [pointer, expected] : places) {
        desktop.movePointer(pointer);
        openByPanel();
        const auto area = window("Content");
        ASSERT_TRUE(area);
        EXPECT_TRUE(*area == QRect(expected, QSize(300, 540)))
            << pointer.x() << ',' << pointer.y() << ": " << area->x() << ',' << area->y();
        runEventLoop(focusSettleTime);
        panel->click();
        ASSERT_TRUE(awaitClosed());
        runEventLoop(focusSettleTime);
    }
}

TEST_F(PanelTest, ItemNamesTheInstalledSymbolBesideItsPixmaps)
{
    const TemporaryFolder data;
    for (const std::string& name : {std::string(), std::string("app.orlimo.Orlimo-symbolic")}) {
        if (!name.empty()) {
            writeFile(data.path() / "icons/hicolor/symbolic/apps" / (name + ".svg"), "<svg/>");
        }
        panel.emplace(desktop);
        startProgram({{"XDG_DATA_DIRS", data.path().string()}});
        ASSERT_TRUE(panel->awaitItem());
        EXPECT_EQ(panel->iconName(), name);
        EXPECT_EQ(panel->iconSizes(), "16,22,24,32,44,48,64,");
        program.reset();
        panel.reset();
    }
}

TEST_F(PanelTest, MenuOpensTheWindowAndQuits)
{
    startWithPanel();
    EXPECT_EQ(panel->menu(), "Open Orlimo,Quit,");
    panel->choose("Open Orlimo");
    EXPECT_TRUE(awaitActive("Content"));
    panel->choose("Quit");
    EXPECT_EQ(program->awaitEnd().status, 0) << program->errors();
    EXPECT_TRUE(awaitWithPolling([this] { return panel->items() == 0; }));
}

TEST_F(PanelTest, IconIsInThePanelOnlyBesideATray)
{
    panel.emplace(desktop);
    desktop.startTray({});
    desktop.awaitTray();
    startProgram();
    ASSERT_TRUE(panel->awaitItem());
    runEventLoop(focusSettleTime);
    EXPECT_FALSE(desktop.windows().trayIconOf(processId()));
}

} // namespace
} // namespace orlimo
