#include "app/guidance/GuidanceWindow.h"
#include "app/guidance/HelperView.h"
#include "app/panel/CodeLabel.h"
#include "app/panel/CopyButton.h"
#include "app/panel/OptionRow.h"
#include "app/panel/PanelSwitches.h"
#include "controls/GroupBox.h"
#include "controls/TextBlock.h"
#include "controls/TextButton.h"
#include "controls/TextLabel.h"
#include "controls/painting/Colors.h"
#include "platform/desktop/SystemSymbol.h"
#include "resources/translations/Languages.h"
#include "resources/translations/TranslationCatalogue.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QApplication>
#include <QLineF>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <ostream>

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

/// A language and a system font in which a window is to look right.
struct Appearance
{
    std::string language;
    std::string fontFamily;
};

void PrintTo(const Appearance& appearance, std::ostream* stream)
{
    *stream << appearance.language << " in " << appearance.fontFamily;
}

/// Every language the program speaks in a wide font; some also in fonts whose accents or
/// overhangs need the whole line.
std::vector<Appearance> allAppearances()
{
    std::vector<Appearance> appearances{
        {"en", "DejaVu Sans"},
        {"es", "Inter"},
        {"es", "Noto Sans CJK JP"},
        {"pt_BR", "Noto Sans CJK JP"},
        {"ja", "Noto Sans CJK JP"}};
    for (const Language& language : supportedLanguages) {
        appearances.push_back({language.catalogue.toString().toStdString(), "DejaVu Sans"});
    }
    return appearances;
}

/// Brings the application's own font and English back at the end of a test.
class LayoutTestBase : public ViewTestBase
{
protected:
    ~LayoutTestBase() override
    {
        QApplication::setFont(usualFont);
        installTranslations(*qApp, {QStringLiteral("en")});
    }

    const QFont usualFont = QApplication::font();
};

/// Both windows in one language and font.
class Layout : public LayoutTestBase, public testing::WithParamInterface<Appearance>
{
protected:
    Layout()
    {
        QApplication::setFont(QFont(QString::fromStdString(GetParam().fontFamily)));
        installTranslations(*qApp, {QString::fromStdString(GetParam().language)});
    }

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
        std::string name = testInfo.param.language + testInfo.param.fontFamily;
        std::erase_if(name, [](unsigned char character) { return std::isalnum(character) == 0; });
        return name;
    });

/// The menu-bar window under conditions that must not change its size.
class MenuSize : public LayoutTestBase
{
protected:
    std::unique_ptr<QWidget> menu = shownMenu();
};

TEST_F(MenuSize, StaysWithAnyCode)
{
    auto& code = named<CodeLabel>(*menu, "verificationCode");
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
        QApplication::setFont(font);
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

/// The lengths of the runs of pixels of exactly that color from `start` to `end`.
std::vector<int>
runsOf(const QColor& color, const Picture& picture, const QPointF& start, const QPointF& end)
{
    std::vector<int> runs{0};
    const QLineF line(start, end);
    const int pixels = qRound(line.length() * picture.pixelsPerPoint());
    for (int index = 0; index < pixels; ++index) {
        if (picture.at(line.pointAt((index + 0.5) / pixels)).rgb() == color.rgb()) {
            ++runs.back();
        } else if (runs.back() > 0) {
            runs.push_back(0);
        }
    }
    std::erase(runs, 0);
    return runs;
}

TEST_F(ViewTestBase, MenuHasEvenlyThickLinesAtEveryScale)
{
    const QPalette colors = lightPalette();
    const PaletteChange palette(colors);
    const auto menu = shownMenu();
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 2.25}) {
        SCOPED_TRACE(scale);
        const int thickness = static_cast<int>(scale);
        // Through the edges of the window and of both groups, and both dividers.
        const Picture picture = Picture::ofWindow(*menu, scale);
        for (const QColor& color : {separatorColor(colors), surfaceBorderColor(colors)}) {
            EXPECT_EQ(runsOf(color, picture, {270, 0}, {270, 540}), std::vector(4, thickness));
            // Between two rows, and above the code.
            for (const auto& [name, below] :
                 {std::pair("captureOptions", 42), std::pair("latestCode", 14)}) {
                const auto& group = named<GroupBox>(*menu, name);
                const double y = areaIn(*menu, group).top() + group.boxArea().top() + below;
                EXPECT_EQ(runsOf(color, picture, {0, y}, {300, y}), std::vector(2, thickness));
            }
        }
    }
}

TEST_F(ViewTestBase, SchemeChangeGivesOldWindowsColorsOfNewOnes)
{
    const auto menu = shownMenu();
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

TEST_F(LayoutTestBase, TextsAreTranslated)
{
    installTranslations(*qApp, {QStringLiteral("de")});
    EXPECT_EQ(
        named<TextLabel>(*shownGuidance(), "title").text(), QStringLiteral("Zugriff erlauben"));
    const auto menu = shownMenu();
    EXPECT_EQ(menu->findChild<OptionRow*>()->text().text(), QStringLiteral("Automatisch kopieren"));
    EXPECT_EQ(named<CopyButton>(*menu, "copy").text(), QStringLiteral("Kopieren"));
    EXPECT_EQ(named<TextButton>(*menu, "quit").text(), QStringLiteral("Beenden"));
}

} // namespace
} // namespace orlimo
