#include "app/guidance/GuidanceWindow.h"
#include "app/guidance/HelperView.h"
#include "app/panel/CodeLabel.h"
#include "app/panel/CopyButton.h"
#include "app/panel/OptionRow.h"
#include "app/panel/PanelSwitches.h"
#include "app/panel/PopupView.h"
#include "controls/Divider.h"
#include "controls/GroupBox.h"
#include "controls/ImageView.h"
#include "controls/Spacer.h"
#include "controls/Switch.h"
#include "controls/SymbolLabel.h"
#include "controls/TextButton.h"
#include "controls/TextLabel.h"
#include "controls/painting/Colors.h"
#include "platform/desktop/SystemSymbol.h"
#include "resources/ImageIcon.h"
#include "tests/app/Appearance.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QAccessible>
#include <QLayout>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace orlimo {
namespace {

// The numbers, texts and order of the three views. That nothing overlaps or is cut, in any
// language, is in LayoutTest.cpp.

/// The widgets of a stack, in its order.
std::vector<QWidget*> stackOf(const QWidget& view)
{
    std::vector<QWidget*> widgets;
    for (int index = 0; index < view.layout()->count(); ++index) {
        widgets.push_back(view.layout()->itemAt(index)->widget());
    }
    return widgets;
}

/// Expects the children of `view` one under the other with that spacing and padding.
void expectStacked(const QWidget& view, int spacing, int padding)
{
    int next = padding;
    for (const QWidget* part : stackOf(view)) {
        EXPECT_EQ(part->y(), next) << part->objectName().toStdString();
        next = part->y() + part->height() + spacing;
    }
    EXPECT_EQ(next - spacing + padding, view.height());
}

void expectFont(const QFont& font, int pixelSize, QFont::Weight weight = QFont::Normal)
{
    EXPECT_EQ(font.pixelSize(), pixelSize);
    EXPECT_EQ(font.weight(), weight);
    EXPECT_FALSE(font.italic());
}

class PanelMeasures : public ViewTestBase
{
protected:
    /// How wide the content of a group is.
    static constexpr int contentWidth = 300 - 2 * 16 - 2 * GroupBox::contentPadding;

    PaletteChange palette{lightPalette()};
    std::unique_ptr<QWidget> menu = shownMenu();
    PopupView& panel = named<PopupView>(*menu, "panel");
    GroupBox& options = named<GroupBox>(*menu, "captureOptions");
    GroupBox& latest = named<GroupBox>(*menu, "latestCode");
    CodeLabel& code = named<CodeLabel>(*menu, "verificationCode");
    CopyButton& copy = named<CopyButton>(*menu, "copy");
};

TEST_F(PanelMeasures, OfGroupsAndTitles)
{
    EXPECT_EQ(stackOf(panel), (std::vector<QWidget*>{&options, &latest}));
    expectStacked(panel, 25, 16);
    struct Title
    {
        GroupBox& group;
        const char* text;
        const char* symbol;
    };
    for (const Title& title :
         {Title{options, "Capture Options", "slider.horizontal.2.square"},
          Title{latest, "Latest Code", "ellipsis.bubble.fill"}})
    {
        EXPECT_EQ(title.group.x(), 16);
        EXPECT_EQ(title.group.width(), 300 - 2 * 16);
        const SymbolLabel& label = title.group.title();
        EXPECT_EQ(label.geometry().topLeft(), QPoint(0, 0));
        EXPECT_EQ(label.symbolName(), QLatin1String(title.symbol));
        EXPECT_FALSE(label.symbolArea().isEmpty());
        EXPECT_EQ(label.textLabel().text(), QLatin1String(title.text));
        EXPECT_EQ(label.textLabel().paintedColor(), grayColor(lightPalette()));
        expectFont(label.textLabel().font(), 15);
    }
}

TEST_F(PanelMeasures, OfSwitchRows)
{
    struct Row
    {
        const char* text;
        const char* key;
        int minTextWidth;
    };
    const std::vector<Row> expected{
        {"Auto Copy to Clipboard", "capturingEnabled", 0},
        {"Include 4 digit code", "fourDigitInclude", 120},
        {"Launch at login", "loginItemEnabled", 120}};
    const auto rows = options.findChildren<OptionRow*>();
    ASSERT_EQ(rows.size(), static_cast<qsizetype>(expected.size()));
    const QPoint origin = options.boxArea().topLeft() + QPoint(4, 4);
    for (qsizetype number = 0; number < rows.size(); ++number) {
        const Row& row = expected[static_cast<std::size_t>(number)];
        SCOPED_TRACE(row.key);
        const OptionRow& shown = *rows[number];
        EXPECT_EQ(shown.text().text(), QLatin1String(row.text));
        EXPECT_EQ(shown.toggle().objectName(), QLatin1String(row.key));
        EXPECT_EQ(shown.text().minimumWidth(), row.minTextWidth);
        EXPECT_EQ(
            shown.text().width(), std::max(row.minTextWidth, shown.text().sizeHint().width()));
        EXPECT_EQ(shown.text().textArea().left(), 0);
        expectFont(shown.text().font(), 13);
        EXPECT_EQ(shown.text().paintedColor(), textColor(lightPalette()));
        EXPECT_EQ(
            areaIn(options, shown),
            QRect(
                origin + QPoint(0, static_cast<int>(number) * (34 + 8)),
                QSize(contentWidth, 7 + 20 + 7)));
        EXPECT_EQ(shown.text().pos(), QPoint(7, 7 + 2));
        EXPECT_EQ(shown.text().height(), 16);
        EXPECT_EQ(shown.toggle().geometry(), QRect(contentWidth - 7 - 36, 7, 36, 20));
        EXPECT_GE(shown.toggle().x() - shown.text().width() - shown.text().x(), 2 * 8)
            << "a spacer between";
    }
}

TEST_F(PanelMeasures, OfCode)
{
    expectFont(code.font(), 24, QFont::ExtraBold);
    EXPECT_EQ(code.font().letterSpacingType(), QFont::AbsoluteSpacing);
    EXPECT_EQ(code.font().letterSpacing(), 3);
    EXPECT_EQ(
        areaIn(latest, code),
        QRect(latest.boxArea().topLeft() + QPoint(4, 4), QSize(contentWidth, 20 + 29)));
    const QRectF ink = Picture::of(code).ink();
    EXPECT_GE(ink.top(), 20);
    EXPECT_NEAR(ink.center().y(), 20 + 29 / 2.0, 2);
    for (const char16_t* text : {u"482913", u"1117", u"71111", u"٤٨٢٩١٣", u"４８２９"}) {
        code.setCode(QString::fromUtf16(text));
        EXPECT_NEAR(Picture::of(code).ink().center().x(), contentWidth / 2.0, 0.75)
            << code.text().toStdString();
    }
}

TEST_F(PanelMeasures, OfCopyButton)
{
    EXPECT_EQ(copy.text(), QStringLiteral("Copy"));
    expectFont(copy.font(), 15);
    EXPECT_EQ(copy.size(), QSize(140 + 2 * 16, 40 + 2 * 16));
    EXPECT_EQ(copy.pillArea(), QRect(16, 16, 140, 40));
    const QRect area = areaIn(latest, copy);
    EXPECT_EQ(area.top(), areaIn(latest, code).bottom() + 1 + 8);
    EXPECT_EQ(2 * area.left() + area.width(), latest.width());
    EXPECT_EQ(area.bottom() + 1 + GroupBox::contentPadding, latest.height());
}

class MenuMeasures : public PanelMeasures
{};

TEST_F(MenuMeasures, OfParts)
{
    EXPECT_EQ(menu->minimumSize(), QSize(300, 540));
    EXPECT_EQ(menu->maximumSize(), QSize(300, 540));
    const auto parts = stackOf(*menu);
    ASSERT_EQ(parts.size(), 5U);
    EXPECT_EQ(parts[0], &panel);
    EXPECT_NE(dynamic_cast<Spacer*>(parts[1]), nullptr);
    EXPECT_NE(dynamic_cast<Divider*>(parts[2]), nullptr);
    EXPECT_EQ(parts[2]->width(), 300);
    EXPECT_EQ(parts[3]->objectName(), QStringLiteral("commands"));
    EXPECT_NE(dynamic_cast<Spacer*>(parts[4]), nullptr);
    EXPECT_LE(std::abs(parts[1]->height() - parts[4]->height()), 1);
    expectStacked(*menu, 1, 0);
}

TEST_F(MenuMeasures, OfCommands)
{
    const auto& commands = named<QWidget>(*menu, "commands");
    const auto parts = stackOf(commands);
    ASSERT_EQ(parts.size(), 4U);
    EXPECT_NE(dynamic_cast<Divider*>(parts[2]), nullptr);
    expectStacked(commands, 8, 20);
    for (const QWidget* part : parts) {
        EXPECT_EQ(part->x(), 20);
        EXPECT_EQ(part->width(), 300 - 2 * 20);
    }
    using Style = TextButton::Style;
    for (const auto& [part, text, style] :
         {std::tuple(0, "About", Style::plain),
          std::tuple(1, "Open website", Style::plain),
          std::tuple(3, "Quit", Style::bordered)})
    {
        SCOPED_TRACE(text);
        const auto& button = *qobject_cast<TextButton*>(parts[static_cast<std::size_t>(part)]);
        EXPECT_EQ(button.text(), QLatin1String(text));
        EXPECT_EQ(button.look().style, style);
        EXPECT_EQ(button.look().padding, QMargins(20, 10, 20, 10));
        EXPECT_EQ(button.look().systemSymbolName, QString());
        expectFont(button.font(), 11);
        const int bezel = style == Style::bordered ? 1 : 0;
        EXPECT_EQ(button.height(), 10 + 13 + 10 + 2 * bezel);
        EXPECT_EQ(button.labelArea().top(), bezel + 10);
        EXPECT_NEAR(button.labelArea().center().x(), 130, 1);
    }
}

class GuidanceMeasures : public testing::Test
{
protected:
    GuidanceMeasures() { showActive(window); }

    PaletteChange palette{lightPalette()};
    HelperView* view =
        new HelperView([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize});
    GuidanceWindow window{view, QRect(QPoint(30, 40), GuidanceWindow::contentSize)};
};

TEST_F(GuidanceMeasures, OfEightElementsInTheirOrder)
{
    EXPECT_EQ(window.minimumSize(), QSize(500, 500));
    EXPECT_EQ(window.maximumSize(), QSize(500, 500));
    EXPECT_EQ(areaIn(window, *view), QRect(0, 0, 500, 500));
    const auto elements = stackOf(*view);
    std::vector<std::string> names;
    for (const QWidget* element : elements) {
        names.push_back(element->objectName().toStdString());
        if (dynamic_cast<const Spacer*>(element) == nullptr) {
            EXPECT_LE(std::abs(2 * element->x() + element->width() - 500), 1) << names.back();
        }
    }
    EXPECT_THAT(
        names,
        testing::ElementsAre(
            "logo", "title", "explanation", "instruction", "", "helper", "", "buttonFrame"));
    EXPECT_NE(dynamic_cast<Spacer*>(elements[4]), nullptr);
    EXPECT_NE(dynamic_cast<Spacer*>(elements[6]), nullptr);
    EXPECT_LE(std::abs(elements[4]->height() - elements[6]->height()), 1);
    expectStacked(*view, 5, 16);
    EXPECT_FALSE(view->autoFillBackground());
    EXPECT_EQ(Picture::of(*view).at(QPointF(2, 2)).alpha(), 0) << "the view has no background";
}

TEST_F(GuidanceMeasures, OfTexts)
{
    struct Text
    {
        const char* name;
        const char* text;
        int fontSize;
        QFont::Weight weight;
        int width;
        QColor color;
    };
    for (const Text& text :
         {Text{"title", "Allow acess", 28, QFont::Bold, 320, Qt::white},
          Text{
              "explanation",
              "Full Disk Access is required to read the verification code from Messages.",
              14,
              QFont::Normal,
              420,
              Qt::white},
          Text{
              "instruction",
              "open System Preferences > Security & Privacy > Full Disk Access and allow Orlimo in "
              "the list.",
              14,
              QFont::Normal,
              420,
              grayColor(window.palette())}})
    {
        SCOPED_TRACE(text.name);
        const auto& label = named<TextLabel>(window, text.name);
        EXPECT_EQ(label.text(), QLatin1String(text.text));
        expectFont(label.font(), text.fontSize, text.weight);
        EXPECT_EQ(label.minimumWidth(), text.width);
        EXPECT_EQ(label.maximumWidth(), text.width);
        EXPECT_EQ(label.paintedColor(), text.color);
        EXPECT_NEAR(label.textArea().center().x(), text.width / 2.0, 1);
        EXPECT_GE(label.height(), 2 * 17) << "a paragraph wraps";
    }
    EXPECT_EQ(named<TextLabel>(window, "title").size(), QSize(320, 34));
}

TEST_F(GuidanceMeasures, OfImagesAndButton)
{
    for (const auto& [name, size] :
         {std::pair("logo", QSize(100, 100)), std::pair("helper", QSize(200, 131))})
    {
        auto& image = named<ImageView>(window, name);
        EXPECT_EQ(image.imageName(), QLatin1String(name));
        EXPECT_EQ(image.size(), size);
        EXPECT_GT(Picture::of(image).ink().width(), size.width() * 0.8);
        EXPECT_GT(Picture::of(image).ink().height(), size.height() * 0.8);
    }
    EXPECT_EQ(
        window.windowIcon().pixmap(64).toImage(),
        imageIcon(QStringLiteral("logo")).pixmap(64).toImage());
    const auto& button = named<TextButton>(window, "openSystemSetting");
    EXPECT_EQ(button.text(), QStringLiteral("Open System Setting"));
    EXPECT_EQ(button.look().style, TextButton::Style::bordered);
    EXPECT_EQ(button.look().systemSymbolName, QStringLiteral("hand.raised.fill"));
    expectFont(button.font(), 15);
    EXPECT_EQ(button.look().padding, QMargins(5, 5, 5, 5));
    EXPECT_EQ(
        areaIn(window, button),
        areaIn(window, named<QWidget>(window, "buttonFrame")).marginsRemoved({16, 16, 16, 16}));
    EXPECT_EQ(button.size(), button.sizeHint());
}

TEST_F(GuidanceMeasures, AreLegibleOnDarkGroundInEveryScheme)
{
    for (const QPalette& scheme : {lightPalette(), darkPalette()}) {
        const PaletteChange change(scheme);
        const Picture picture = Picture::ofWindow(window);
        const QColor ground = picture.at(QPointF(3, 3));
        EXPECT_EQ(ground.alpha(), 255);
        EXPECT_LT(ground.lightnessF(), 0.25);
        for (const TextLabel* text : window.findChildren<TextLabel*>()) {
            EXPECT_GE(contrastRatio(text->paintedColor(), ground), legibleContrast)
                << text->text().toStdString();
        }
        auto& button = named<TextButton>(window, "openSystemSetting");
        const QColor surface = picture.at(areaIn(window, button).topLeft() + QPointF(8, 15));
        EXPECT_NE(surface, ground);
        EXPECT_GE(contrastRatio(textColor(button.palette()), surface), legibleContrast);
    }
}

TEST_F(ViewTestBase, TextsAreTranslated)
{
    const LanguageChange german(QStringLiteral("de"));
    const HelperView view([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize});
    EXPECT_EQ(named<TextLabel>(view, "title").text(), QStringLiteral("Zugriff erlauben"));
    const auto menu = shownMenu();
    const auto rows = menu->findChildren<OptionRow*>();
    EXPECT_EQ(rows[0]->text().text(), QStringLiteral("Automatisch kopieren"));
    EXPECT_EQ(named<CopyButton>(*menu, "copy").text(), QStringLiteral("Kopieren"));
    EXPECT_EQ(named<TextButton>(*menu, "quit").text(), QStringLiteral("Beenden"));
}

} // namespace
} // namespace orlimo
