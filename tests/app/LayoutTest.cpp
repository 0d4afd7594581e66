#include "app/guidance/GuidanceWindow.h"
#include "app/guidance/HelperView.h"
#include "app/panel/CodeLabel.h"
#include "app/panel/PanelSwitches.h"
#include "controls/GroupBox.h"
#include "controls/TextBlock.h"
#include "controls/TextButton.h"
#include "controls/TextLabel.h"
#include "controls/painting/Colors.h"
#include "platform/desktop/SystemSymbol.h"
#include "tests/app/Appearance.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QCoreApplication>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

using testing::ElementsAre;

std::unique_ptr<GuidanceWindow> shownGuidance()
{
    auto window = std::make_unique<GuidanceWindow>(
        new HelperView([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize}),
        QRect(QPoint(30, 40), GuidanceWindow::contentSize));
    showActive(*window);
    return window;
}

/// The names of the controls through which Tab leads, until it has come round to the first.
std::vector<std::string> tabOrder(QWidget& window)
{
    std::vector<std::string> order;
    while (order.size() < 20) {
        QTest::keyClick(&window, Qt::Key_Tab);
        const std::string name = window.focusWidget()->objectName().toStdString();
        if (!order.empty() && name == order.front()) {
            break;
        }
        order.push_back(name);
    }
    return order;
}

/// Both windows in one language and font.
class Layout : public ViewTestBase, public testing::WithParamInterface<Appearance>
{
protected:
    /// English and the widest usual font leave every text its size; elsewhere it may shrink, but
    /// stays legible.
    static void expectLegible(const QWidget& window)
    {
        constexpr int minPixelSize = 10;
        const bool keepsSize =
            GetParam().language == "en" || GetParam().fontFamily == "DejaVu Sans";
        for (const TextLabel* label : window.findChildren<TextLabel*>()) {
            if (!label->hasHeightForWidth()) {
                EXPECT_GE(
                    TextBlock::fitted(label->text(), label->font(), label->width())
                        .font()
                        .pixelSize(),
                    keepsSize ? label->fontPixelSize() : minPixelSize)
                    << label->text().toStdString();
            }
        }
        for (const TextButton* button : window.findChildren<TextButton*>()) {
            EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
        }
    }

    static void expectWhole(QWidget& window)
    {
        expectNothingClipped(window);
        expectLegible(window);
        // Rendered at these scales whatever the screen's is: once is enough.
        if (window.devicePixelRatioF() == 1) {
            using Scales = std::vector<double>;
            for (const double scale : GetParam().fontFamily != "DejaVu Sans"
                                          ? Scales{1.25, 1.5, 1.75, 2.25}
                                          : Scales{1.25, 1.75})
            {
                expectLabelsWholeAt(scale, window);
            }
        }
    }

    FontChange font{QFont(QString::fromStdString(GetParam().fontFamily))};
    LanguageChange language{QString::fromStdString(GetParam().language)};
};

TEST_P(Layout, OfMenuBarWindowOverlapsAndCutsNothing)
{
    const auto menu = shownMenu();
    EXPECT_EQ(menu->size(), QSize(300, 540));
    expectWhole(*menu);
    std::vector<std::string> order;
    for (const PanelSwitch& panelSwitch : panelSwitches) {
        order.emplace_back(panelSwitch.preferenceKey);
    }
    order.insert(order.end(), {"copy", "about", "openWebsite", "quit"});
    EXPECT_EQ(tabOrder(*menu), order);
}

TEST_P(Layout, OfGuidanceWindowOverlapsAndCutsNothing)
{
    const auto window = shownGuidance();
    EXPECT_EQ(window->size(), QSize(500, 500));
    expectWhole(*window);
    EXPECT_THAT(tabOrder(*window), ElementsAre("openSystemSetting"));
    for (const char* name : {"explanation", "instruction"}) {
        const auto& paragraph = named<TextLabel>(*window, name);
        EXPECT_EQ(paragraph.width(), 420);
        const bool needsLines = TextBlock(paragraph.text(), paragraph.font()).size().width() > 420;
        EXPECT_EQ(paragraph.height() >= 2 * 17, needsLines) << name;
        EXPECT_EQ(paragraph.height(), paragraph.heightForWidth(420));
        EXPECT_LE(paragraph.textArea().width(), 420);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Appearances, Layout, testing::ValuesIn(allAppearances()), [](const auto& testInfo) {
        return nameOf(testInfo.param);
    });

/// The menu-bar window under conditions that must not change its size.
class MenuSize : public ViewTestBase
{
protected:
    std::unique_ptr<QWidget> menu = shownMenu();
    CodeLabel& code = named<CodeLabel>(*menu, "verificationCode");
};

TEST_F(MenuSize, StaysWithAnyCode)
{
    for (const char16_t* text : {u"", u"1", u"٤٨٢٩١٣", u"４８２９１３", u"𝟒𝟖𝟐𝟗𝟏𝟑"}) {
        code.setCode(QString::fromUtf16(text));
        QCoreApplication::sendPostedEvents();
        EXPECT_EQ(menu->size(), QSize(300, 540));
        expectNothingClipped(*menu);
    }
    code.setCode(QString(60, u'8'));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(menu->size(), QSize(300, 540));
    EXPECT_EQ(code.width(), 300 - 2 * 16 - 2 * 4);
}

TEST_F(MenuSize, StaysWithAnyApplicationFont)
{
    for (const int pointSize : {6, 24, 60}) {
        QFont font;
        font.setPointSize(pointSize);
        font.setBold(true);
        const FontChange change(font);
        QCoreApplication::processEvents();
        const auto fresh = shownMenu();
        for (QWidget* window : {menu.get(), fresh.get()}) {
            EXPECT_EQ(window->size(), QSize(300, 540));
            EXPECT_EQ(named<TextButton>(*window, "about").height(), 33);
            EXPECT_EQ(named<CodeLabel>(*window, "verificationCode").font().pixelSize(), 24);
            expectNothingClipped(*window);
        }
    }
}

TEST_F(MenuSize, StaysWhenMirroredOrResized)
{
    menu->setLayoutDirection(Qt::RightToLeft);
    menu->resize(400, 700);
    QCoreApplication::processEvents();
    EXPECT_EQ(menu->size(), QSize(300, 540));
    expectNothingClipped(*menu);
}

/// How the menu-bar window's lines come out with that many pixels a point.
class MenuLines : public ViewTestBase, public testing::WithParamInterface<double>
{
protected:
    /// The number of pixels of exactly that color from `start` on in a direction.
    [[nodiscard]] int countFrom(QPointF start, QPointF direction, const QColor& color) const
    {
        const QPointF pixel = direction / GetParam();
        int count = 0;
        while (picture.at(start + count * pixel).rgb() == color.rgb()) {
            ++count;
        }
        return count;
    }

    const QPalette colors = lightPalette();
    PaletteChange palette{colors};
    std::unique_ptr<QWidget> menu = shownMenu();
    Picture picture = Picture::ofWindow(*menu, GetParam());
    int linePixels = static_cast<int>(GetParam());
};

TEST_P(MenuLines, AreEvenlyThick)
{
    const QColor edge = separatorColor(colors);
    const double last = 1 / GetParam();
    EXPECT_EQ(countFrom({150, 0}, {0, 1}, edge), linePixels);
    EXPECT_EQ(countFrom({0, 270}, {1, 0}, edge), linePixels);
    EXPECT_EQ(countFrom({150, 540 - last}, {0, -1}, edge), linePixels);
    EXPECT_EQ(countFrom({300 - last, 270}, {-1, 0}, edge), linePixels);
    for (const char* name : {"captureOptions", "latestCode"}) {
        const auto& group = named<GroupBox>(*menu, name);
        const QRectF box = QRectF(group.boxArea()).translated(areaIn(*menu, group).topLeft());
        const QPointF middle = box.center();
        for (const auto& [inside, outward] :
             {std::pair(QPointF(middle.x(), box.top() + 3), QPointF(0, -1)),
              std::pair(QPointF(middle.x(), box.bottom() - 3), QPointF(0, 1)),
              std::pair(QPointF(box.left() + 3, middle.y()), QPointF(-1, 0)),
              std::pair(QPointF(box.right() - 3, middle.y()), QPointF(1, 0))})
        {
            const int before = countFrom(inside, outward, surfaceColor(colors));
            const QPointF line = inside + before * outward / GetParam();
            EXPECT_EQ(countFrom(line, outward, surfaceBorderColor(colors)), linePixels) << name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, MenuLines, testing::Values(1, 1.25, 1.5, 1.75, 2, 2.25));

class Scheme : public MenuSize
{};

TEST_F(Scheme, ChangeGivesOldWindowsColorsOfNewOnes)
{
    const auto guidance = shownGuidance();
    for (const bool hidden : {false, true}) {
        for (const QPalette& scheme : {darkPalette(QColor(200, 30, 60)), lightPalette()}) {
            menu->setVisible(!hidden);
            const Picture before = Picture::ofWindow(*menu);
            const PaletteChange change(scheme);
            const auto fresh = shownMenu("");
            const OutputCapture swallowed;
            showActive(*menu);
            const Picture after = Picture::ofWindow(*menu);
            EXPECT_EQ(after.differenceFrom(Picture::ofWindow(*fresh)), QRectF());
            EXPECT_EQ(after.ink(), QRectF(0, 0, 300, 540));
            EXPECT_THAT(after.at({150, 8}), isColor(windowColor(scheme)));
            const auto freshGuidance = shownGuidance();
            EXPECT_EQ(
                Picture::ofWindow(*guidance).differenceFrom(Picture::ofWindow(*freshGuidance)),
                QRectF());
        }
    }
}

} // namespace
} // namespace orlimo
