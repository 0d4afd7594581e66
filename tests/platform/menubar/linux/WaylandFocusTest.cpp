#include "platform/menubar/linux/WaylandFocus.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The reason for a loss of focus on `desktop` with `settings` for KWin.
FocusLoss lossOn(const char* desktop, const std::string& settings = "")
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "kwinrc";
    writeFile(file, settings);
    return focusLossOnWayland(QString::fromLatin1(desktop), QString::fromStdString(file.string()));
}

TEST(WaylandFocusTest, IsDeliberateOnClickToFocusDesktops)
{
    EXPECT_EQ(lossOn("ubuntu:GNOME"), FocusLoss::deliberate);
    EXPECT_EQ(lossOn("KDE"), FocusLoss::deliberate);
    EXPECT_EQ(lossOn("KDE", "[Windows]\nFocusPolicy=ClickToFocus\n"), FocusLoss::deliberate);
    EXPECT_EQ(focusLossOnWayland(QStringLiteral("KDE"), QString()), FocusLoss::deliberate);
}

TEST(WaylandFocusTest, IsUnknownIfTheFocusMayFollowThePointer)
{
    EXPECT_EQ(lossOn("sway"), FocusLoss::unknown);
    EXPECT_EQ(lossOn(""), FocusLoss::unknown);
    EXPECT_EQ(lossOn("KDE", "[Windows]\nFocusPolicy=FocusFollowsMouse\n"), FocusLoss::unknown);
}

} // namespace
} // namespace orlimo
