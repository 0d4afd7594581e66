#include "app/guidance/GuidanceWindow.h"
#include "app/guidance/HelperView.h"
#include "app/panel/CopyButton.h"
#include "controls/TextBlock.h"
#include "controls/TextButton.h"
#include "controls/TextLabel.h"
#include "tests/app/Appearance.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The size below which a text that had to shrink would be hard to read.
constexpr int smallestReadableSize = 10;

/// The font in which the label's text is painted.
int paintedPixelSize(const TextLabel& label)
{
    return TextBlock::fitted(label.text(), label.font(), label.width()).font().pixelSize();
}

/// The windows in one language and font.
class Clipping : public ViewTestBase, public testing::WithParamInterface<Appearance>
{
protected:
    static void expectReadable(const QWidget& window)
    {
        for (const TextLabel* label : window.findChildren<TextLabel*>()) {
            if (!label->hasHeightForWidth()) {
                EXPECT_GE(paintedPixelSize(*label), smallestReadableSize)
                    << label->text().toStdString();
            }
        }
    }

    FontChange font{QFont(QString::fromStdString(GetParam().fontFamily))};
    LanguageChange language{QString::fromStdString(GetParam().language)};
};

TEST_P(Clipping, LeavesTheMenuBarWindowWhole)
{
    const auto menu = shownMenu();
    EXPECT_EQ(menu->size(), QSize(300, 540));
    expectNothingClipped(*menu);
    expectReadable(*menu);
}

TEST_P(Clipping, LeavesTheGuidanceWindowWhole)
{
    GuidanceWindow window(
        new HelperView([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize}),
        QRect(QPoint(0, 0), GuidanceWindow::contentSize));
    showActive(window);
    EXPECT_EQ(window.size(), QSize(500, 500));
    expectNothingClipped(window);
    expectReadable(window);
}

TEST_P(Clipping, LeavesTheLabelsWholeWhereAPointIsNoWholeNumberOfPixels)
{
    const auto menu = shownMenu();
    GuidanceWindow guidance(
        new HelperView([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize}),
        QRect(QPoint(0, 0), GuidanceWindow::contentSize));
    showActive(guidance);
    for (const double scale : {1.25, 1.5, 1.75, 2.25}) {
        expectLabelsWholeAt(scale, *menu);
        expectLabelsWholeAt(scale, guidance);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Appearances, Clipping, testing::ValuesIn(allAppearances()), [](const auto& testInfo) {
        return nameOf(testInfo.param);
    });

/// In English nothing needs to shrink, in whatever font.
class NaturalSize : public ViewTestBase, public testing::WithParamInterface<const char*>
{
protected:
    FontChange font{QFont(QLatin1String(GetParam()))};
};

TEST_P(NaturalSize, IsKeptByEveryText)
{
    const auto menu = shownMenu();
    GuidanceWindow guidance(
        new HelperView([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize}),
        QRect(QPoint(0, 0), GuidanceWindow::contentSize));
    layOut(guidance);
    for (const QWidget* window :
         {static_cast<QWidget*>(menu.get()), static_cast<QWidget*>(&guidance)}) {
        for (const TextLabel* label : window->findChildren<TextLabel*>()) {
            if (!label->hasHeightForWidth()) {
                EXPECT_EQ(paintedPixelSize(*label), label->fontPixelSize())
                    << label->text().toStdString();
            }
        }
        for (const TextButton* button : window->findChildren<TextButton*>()) {
            EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Fonts,
    NaturalSize,
    testing::Values("DejaVu Sans", "Inter", "Noto Sans CJK JP"),
    [](const auto& testInfo) {
        return nameOf({"", testInfo.param});
    });

} // namespace
} // namespace orlimo
