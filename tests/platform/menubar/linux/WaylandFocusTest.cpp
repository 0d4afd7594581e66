#include "platform/menubar/linux/WaylandFocus.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace orlimo {
namespace {

TEST(WaylandFocus, LossIsDeliberateOnlyOnDesktopsWhereThePointerDoesNotMoveIt)
{
    struct Case
    {
        const char* desktop;
        std::optional<std::string> settingsOfKWin;
        FocusLoss expected;
    };
    for (const auto& [desktop, settings, expected] : std::vector<Case>{
             {"ubuntu:GNOME", {}, FocusLoss::deliberate},
             {"KDE", {}, FocusLoss::deliberate},
             {"KDE", "", FocusLoss::deliberate},
             {"KDE", "[Windows]\nFocusPolicy=ClickToFocus\n", FocusLoss::deliberate},
             {"KDE", "[Windows]\nFocusPolicy=FocusFollowsMouse\n", FocusLoss::unknown},
             {"sway", {}, FocusLoss::unknown},
             {"", {}, FocusLoss::unknown}})
    {
        const TemporaryFolder folder;
        if (settings) {
            writeFile(folder.path() / "kwinrc", *settings);
        }
        const EnvironmentChange name("XDG_CURRENT_DESKTOP", desktop);
        const EnvironmentChange own("XDG_CONFIG_HOME", folder.path().string());
        const EnvironmentChange common("XDG_CONFIG_DIRS", folder.path().string());
        EXPECT_EQ(focusLossOnWayland(), expected) << desktop;
    }
}

} // namespace
} // namespace orlimo
