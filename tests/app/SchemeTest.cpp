#include "app/guidance/GuidanceWindow.h"
#include "app/guidance/HelperView.h"
#include "controls/TextButton.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// Windows that were there before the desktop changed its colours, beside windows made after it.
class Scheme : public ViewTestBase
{
protected:
    Scheme() { preferences.setBool(true, "fourDigitInclude"); }

    static std::unique_ptr<QWidget> shownGuidance()
    {
        auto window = std::make_unique<GuidanceWindow>(
            new HelperView([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize}),
            QRect(QPoint(0, 0), GuidanceWindow::contentSize));
        showActive(*window);
        return window;
    }

    /// The guidance window with the keyboard on its button: the one thing in the accent colour.
    static Picture withFocusRing(QWidget& window)
    {
        showActive(window);
        auto& button = named<TextButton>(window, "openSystemSetting");
        button.clearFocus();
        button.setFocus(Qt::TabFocusReason);
        return Picture::ofWindow(window);
    }

    static void expectSame(QWidget& before, QWidget& after)
    {
        EXPECT_EQ(Picture::ofWindow(before).differenceFrom(Picture::ofWindow(after)), QRectF());
    }

    const QPalette light = lightPalette();
    const QPalette dark = darkPalette(QColor(200, 30, 60));
};

TEST_F(Scheme, ChangedToDarkIsFollowedByTheMenuBarWindow)
{
    const PaletteChange before(light);
    const auto menu = shownMenu();
    const Picture lightMenu = Picture::ofWindow(*menu);
    const PaletteChange after(dark);
    const auto fresh = shownMenu("");
    expectSame(*menu, *fresh);
    EXPECT_EQ(Picture::ofWindow(*menu).differenceFrom(lightMenu), QRectF(0, 0, 300, 540));
}

TEST_F(Scheme, ChangedToLightIsFollowedByTheMenuBarWindow)
{
    const PaletteChange before(dark);
    const auto menu = shownMenu();
    const PaletteChange after(light);
    const auto fresh = shownMenu("");
    expectSame(*menu, *fresh);
}

TEST_F(Scheme, ChangedIsFollowedByTheGuidanceWindow)
{
    const PaletteChange before(light);
    const auto window = shownGuidance();
    const PaletteChange after(dark);
    const Picture changed = withFocusRing(*window);
    const auto fresh = shownGuidance();
    EXPECT_EQ(changed.differenceFrom(withFocusRing(*fresh)), QRectF());
}

TEST_F(Scheme, ChangedWhileTheWindowIsHiddenIsSeenWhenItOpens)
{
    const PaletteChange before(light);
    const auto menu = shownMenu();
    menu->hide();
    const PaletteChange after(dark);
    const auto fresh = shownMenu("");
    {
        const OutputCapture swallowed;
        showActive(*menu);
    }
    expectSame(*menu, *fresh);
}

} // namespace
} // namespace orlimo
