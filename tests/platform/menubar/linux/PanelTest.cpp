#include "tests/desktop/sessions/StatusNotifierPanel.h"
#include "tests/platform/desktop/linux/DesktopProbeTest.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/widgets/QtPrinting.h"

#include <QRect>
#include <gtest/gtest.h>

#include <chrono>

namespace orlimo {
namespace {

/// The icon in a panel that shows status notifier items and does not report the icon's position.
class PanelTest : public DesktopProbeTest
{
protected:
    /// Opens the window with a click on the item and closes it with another one.
    void use()
    {
        panel->click();
        ASSERT_TRUE(awaitActive("Content"));
        runEventLoop(focusSettleTime);
        panel->click();
        expectClosed();
    }

    std::optional<StatusNotifierPanel> panel;
};

TEST_F(PanelTest, ItemAppearsWheneverAHostIsRegisteredAndWithANewPanel)
{
    startProgram();
    panel.emplace(desktop, StatusNotifierPanel::Host::absent);
    runEventLoop(focusSettleTime);
    EXPECT_EQ(panel->items(), 0);
    panel->registerHost();
    ASSERT_TRUE(panel->awaitItem());
    use();
    panel->unregisterHost();
    panel->registerHost();
    EXPECT_TRUE(panel->awaitItem());
    use();
    panel.reset();
    runEventLoop(focusSettleTime);
    EXPECT_FALSE(window("Content"));
    panel.emplace(desktop);
    ASSERT_TRUE(panel->awaitItem());
    use();
}

TEST_F(PanelTest, FrozenPanelBlocksNeitherTheProgramNorATray)
{
    // Less than the timeout of a call on the bus.
    constexpr std::chrono::seconds limit(15);
    panel.emplace(desktop);
    panel->freeze();
    desktop.startTray({});
    launchProgram();
    ASSERT_TRUE(program->awaitLine("did finish launching", limit));
    program->writeLine("open if no tray");
    ASSERT_TRUE(program->awaitLine("opened", limit));
    panel->thaw();
    EXPECT_TRUE(panel->awaitItem());
    panel->freeze();
    endProgram();
    startProgram();
    panel.reset();
    EXPECT_TRUE(awaitIcon());
}

TEST_F(PanelTest, PanelIsPreferredToATrayAndTheWindowOpensByItselfOnlyWhileItIsGone)
{
    panel.emplace(desktop);
    desktop.startTray({});
    desktop.awaitTray();
    startProgram();
    ASSERT_TRUE(panel->awaitItem());
    // The icon of a panel does not move to a tray, so that the program would be invisible.
    expectOpenOnlyWithoutTray([this] {
        EXPECT_FALSE(desktop.windows().trayIconOf(processId()));
        panel.reset();
    });
}

TEST_F(PanelTest, ItemHasASymbolPixmapsAndAMenuThatOpensTheWindowAtThePointerAndQuits)
{
    const TemporaryFolder data;
    writeFile(data.path() / "icons/hicolor/symbolic/apps/app.orlimo.Orlimo-symbolic.svg", "<svg/>");
    panel.emplace(desktop);
    startProgram({{"XDG_DATA_DIRS", data.path().string()}});
    ASSERT_TRUE(panel->awaitItem());
    EXPECT_EQ(panel->iconName(), "app.orlimo.Orlimo-symbolic");
    EXPECT_EQ(panel->iconSizes(), "16,22,24,32,44,48,64,");
    EXPECT_EQ(panel->menu(), "Open Orlimo,Quit,");
    desktop.movePointer({1279, 0});
    panel->choose("Open Orlimo");
    EXPECT_TRUE(awaitActive("Content"));
    EXPECT_EQ(window("Content"), QRect(980, 1, 300, 540)) << "at the pointer, inside the screen";
    panel->choose("Quit");
    EXPECT_EQ(program->awaitEnd().status, 0) << program->errors();
    EXPECT_TRUE(awaitWithPolling([this] { return panel->items() == 0; }));
}

} // namespace
} // namespace orlimo
