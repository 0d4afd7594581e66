#include "app/guidance/GuidanceWindow.h"
#include "app/guidance/HelperView.h"
#include "app/panel/CodeLabel.h"
#include "app/panel/CopyButton.h"
#include "app/panel/OptionRow.h"
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
#include "tests/app/ViewTestBase.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QLayout>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace orlimo {
namespace {

// The numbers, texts and order of the three views. That nothing overlaps or is cut, in any
// language, is in LayoutTest.cpp.

/// Expects the parts of `view` one under the other in its middle, with that spacing and padding,
/// and the spacers among them equally high.
void expectStack(
    const QWidget& view, const std::vector<std::string>& expected, int spacing, int padding)
{
    std::vector<std::string> names;
    std::vector<int> spacerHeights;
    int next = padding;
    for (int index = 0; index < view.layout()->count(); ++index) {
        const QWidget& part = *view.layout()->itemAt(index)->widget();
        if (dynamic_cast<const Spacer*>(&part) != nullptr) {
            names.emplace_back("spacer");
            spacerHeights.push_back(part.height());
        } else {
            const bool isDivider = dynamic_cast<const Divider*>(&part) != nullptr;
            names.push_back(isDivider ? "divider" : part.objectName().toStdString());
            EXPECT_LE(std::abs(2 * part.x() + part.width() - view.width()), 1) << names.back();
        }
        EXPECT_EQ(part.y(), next) << names.back();
        next = part.y() + part.height() + spacing;
    }
    EXPECT_EQ(names, expected);
    EXPECT_EQ(next - spacing + padding, view.height());
    if (!spacerHeights.empty()) {
        EXPECT_LE(std::abs(spacerHeights.front() - spacerHeights.back()), 1);
    }
}

void expectFont(const QFont& font, int pixelSize, QFont::Weight weight = QFont::Normal)
{
    EXPECT_EQ(font.pixelSize(), pixelSize);
    EXPECT_EQ(font.weight(), weight);
    EXPECT_FALSE(font.italic());
}

class MenuMeasures : public ViewTestBase
{
protected:
    /// How wide the content of a group is.
    static constexpr int contentWidth = 300 - 2 * 16 - 2 * GroupBox::contentPadding;

    PaletteChange palette{lightPalette()};
    std::unique_ptr<QWidget> menu = shownMenu();
    GroupBox& options = named<GroupBox>(*menu, "captureOptions");
    GroupBox& latest = named<GroupBox>(*menu, "latestCode");
    CodeLabel& code = named<CodeLabel>(*menu, "verificationCode");
};

TEST_F(MenuMeasures, OfParts)
{
    EXPECT_EQ(menu->minimumSize(), QSize(300, 540));
    EXPECT_EQ(menu->maximumSize(), QSize(300, 540));
    expectStack(*menu, {"panel", "spacer", "divider", "commands", "spacer"}, 1, 0);
}

TEST_F(MenuMeasures, OfGroupsAndTitles)
{
    expectStack(named<QWidget>(*menu, "panel"), {"captureOptions", "latestCode"}, 25, 16);
    for (const auto& [group, text, symbol] :
         {std::tuple(&options, "Capture Options", "slider.horizontal.2.square"),
          std::tuple(&latest, "Latest Code", "ellipsis.bubble.fill")})
    {
        EXPECT_EQ(group->width(), 300 - 2 * 16);
        EXPECT_EQ(group->title().symbolName(), QLatin1String(symbol));
        EXPECT_FALSE(group->title().symbolArea().isEmpty());
        const TextLabel& label = group->title().textLabel();
        EXPECT_EQ(label.text(), QLatin1String(text));
        EXPECT_EQ(label.paintedColor(), grayColor(lightPalette()));
        expectFont(label.font(), 15);
    }
}

TEST_F(MenuMeasures, OfSwitchRows)
{
    const auto rows = options.findChildren<OptionRow*>();
    ASSERT_EQ(rows.size(), 3);
    QPoint origin = options.boxArea().topLeft() + QPoint(4, 4);
    int number = 0;
    for (const auto& [text, key, minTextWidth] :
         {std::tuple("Auto Copy to Clipboard", "capturingEnabled", 0),
          std::tuple("Include 4 digit code", "fourDigitInclude", 120),
          std::tuple("Launch at login", "loginItemEnabled", 120)})
    {
        SCOPED_TRACE(key);
        const OptionRow& row = *rows[number++];
        EXPECT_EQ(areaIn(options, row), QRect(origin, QSize(contentWidth, 7 + 20 + 7)));
        const TextLabel& label = row.text();
        EXPECT_EQ(label.text(), QLatin1String(text));
        EXPECT_EQ(label.minimumWidth(), minTextWidth);
        const int width = std::max(minTextWidth, label.sizeHint().width());
        EXPECT_EQ(label.geometry(), QRect(7, 7 + 2, width, 16));
        EXPECT_EQ(label.textArea().left(), 0);
        expectFont(label.font(), 13);
        EXPECT_EQ(label.paintedColor(), textColor(lightPalette()));
        EXPECT_EQ(row.toggle().objectName(), QLatin1String(key));
        EXPECT_EQ(row.toggle().geometry(), QRect(contentWidth - 7 - 36, 7, 36, 20));
        EXPECT_GE(row.toggle().x() - width - 7, 2 * 8) << "a spacer between";
        origin.ry() += 34 + 8;
    }
}

TEST_F(MenuMeasures, OfCode)
{
    EXPECT_EQ(code.textFormat(), Qt::PlainText);
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

TEST_F(MenuMeasures, OfCopyButton)
{
    const auto& copy = named<CopyButton>(*menu, "copy");
    EXPECT_EQ(copy.text(), QStringLiteral("Copy"));
    expectFont(copy.font(), 15);
    EXPECT_EQ(copy.size(), QSize(140 + 2 * 16, 40 + 2 * 16));
    EXPECT_EQ(copy.pillArea(), QRect(16, 16, 140, 40));
    const QRect area = areaIn(latest, copy);
    EXPECT_EQ(area.top(), areaIn(latest, code).bottom() + 1 + 8);
    EXPECT_EQ(2 * area.left() + area.width(), latest.width());
    EXPECT_EQ(area.bottom() + 1 + GroupBox::contentPadding, latest.height());
}

TEST_F(MenuMeasures, OfCommands)
{
    const auto& commands = named<QWidget>(*menu, "commands");
    expectStack(commands, {"about", "openWebsite", "divider", "quit"}, 8, 20);
    using Style = TextButton::Style;
    for (const auto& [name, text, style] :
         {std::tuple("about", "About", Style::plain),
          std::tuple("openWebsite", "Open website", Style::plain),
          std::tuple("quit", "Quit", Style::bordered)})
    {
        SCOPED_TRACE(text);
        const auto& button = named<TextButton>(commands, name);
        EXPECT_EQ(button.text(), QLatin1String(text));
        EXPECT_EQ(button.look().style, style);
        EXPECT_EQ(button.look().padding, QMargins(20, 10, 20, 10));
        EXPECT_EQ(button.look().systemSymbolName, QString());
        expectFont(button.font(), 11);
        const int bezel = style == Style::bordered ? 1 : 0;
        EXPECT_EQ(button.size(), QSize(300 - 2 * 20, 10 + 13 + 10 + 2 * bezel));
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
    TextButton& button = named<TextButton>(window, "openSystemSetting");
};

TEST_F(GuidanceMeasures, OfEightElementsInTheirOrder)
{
    EXPECT_EQ(window.minimumSize(), QSize(500, 500));
    EXPECT_EQ(window.maximumSize(), QSize(500, 500));
    EXPECT_EQ(areaIn(window, *view), QRect(0, 0, 500, 500));
    expectStack(
        *view,
        {"logo",
         "title",
         "explanation",
         "instruction",
         "spacer",
         "helper",
         "spacer",
         "buttonFrame"},
        5,
        16);
    EXPECT_FALSE(view->autoFillBackground());
    EXPECT_EQ(Picture::of(*view).at(QPointF(2, 2)).alpha(), 0) << "the view has no background";
}

TEST_F(GuidanceMeasures, OfTexts)
{
    struct Text
    {
        const char* name;
        const char* text;
        QColor color;
        int width = 420;
        int fontSize = 14;
        QFont::Weight weight = QFont::Normal;
    };
    for (const Text& text :
         {Text{"title", "Allow acess", Qt::white, 320, 28, QFont::Bold},
          Text{
              "explanation",
              "Full Disk Access is required to read the verification code from Messages.",
              Qt::white},
          Text{
              "instruction",
              "open System Preferences > Security & Privacy > Full Disk Access and allow Orlimo in "
              "the list.",
              grayColor(window.palette())}})
    {
        SCOPED_TRACE(text.name);
        const auto& label = named<TextLabel>(window, text.name);
        EXPECT_EQ(label.text(), QLatin1String(text.text));
        expectFont(label.font(), text.fontSize, text.weight);
        EXPECT_EQ(label.minimumWidth(), text.width);
        EXPECT_EQ(label.maximumWidth(), text.width);
        EXPECT_EQ(label.height(), 2 * 17) << "a paragraph wraps";
        EXPECT_EQ(label.paintedColor(), text.color);
        EXPECT_NEAR(label.textArea().center().x(), text.width / 2.0, 1);
    }
}

TEST_F(GuidanceMeasures, OfImagesAndButton)
{
    for (const auto& [name, size] :
         {std::pair("logo", QSize(100, 100)), std::pair("helper", QSize(200, 131))})
    {
        EXPECT_EQ(named<ImageView>(window, name).imageName(), QLatin1String(name));
        EXPECT_EQ(named<ImageView>(window, name).size(), size);
    }
    EXPECT_EQ(
        window.windowIcon().pixmap(64).toImage(),
        imageIcon(QStringLiteral("logo")).pixmap(64).toImage());
    EXPECT_EQ(button.text(), QStringLiteral("Open System Setting"));
    EXPECT_EQ(button.look().style, TextButton::Style::bordered);
    EXPECT_EQ(button.look().systemSymbolName, QStringLiteral("hand.raised.fill"));
    expectFont(button.font(), 15);
    EXPECT_EQ(button.look().padding, QMargins(5, 5, 5, 5));
    EXPECT_EQ(button.size(), button.sizeHint());
    EXPECT_EQ(
        areaIn(window, button),
        areaIn(window, named<QWidget>(window, "buttonFrame")).marginsRemoved({16, 16, 16, 16}));
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
        const QColor surface = picture.at(areaIn(window, button).topLeft() + QPointF(8, 15));
        EXPECT_NE(surface, ground);
        EXPECT_GE(contrastRatio(textColor(button.palette()), surface), legibleContrast);
    }
}

} // namespace
} // namespace orlimo
