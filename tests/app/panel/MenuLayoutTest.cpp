#include "app/panel/CodeLabel.h"
#include "app/panel/PopupView.h"
#include "controls/Divider.h"
#include "controls/GroupBox.h"
#include "controls/Spacer.h"
#include "controls/TextButton.h"
#include "tests/app/Appearance.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <QCoreApplication>
#include <QLayout>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

namespace orlimo {
namespace {

/// The widgets of a stack, in its order.
QList<QWidget*> stackOf(const QWidget& view)
{
    QList<QWidget*> widgets;
    for (int index = 0; index < view.layout()->count(); ++index) {
        widgets.append(view.layout()->itemAt(index)->widget());
    }
    return widgets;
}

int bottomOf(const QRect& area)
{
    return area.top() + area.height();
}

/// The menu-bar window's content, by language.
class MenuLayout : public ViewTestBase, public testing::WithParamInterface<const char*>
{
protected:
    TextButton& command(const char* name) { return named<TextButton>(*menu, name); }

    PaletteChange palette{lightPalette()};
    LanguageChange language{QLatin1String(GetParam())};
    std::unique_ptr<QWidget> menu = shownMenu();
    QWidget& commands = named<QWidget>(*menu, "commands");
};

TEST_P(MenuLayout, Is300By540)
{
    EXPECT_EQ(menu->size(), QSize(300, 540));
    EXPECT_EQ(menu->minimumSize(), QSize(300, 540));
    EXPECT_EQ(menu->maximumSize(), QSize(300, 540));
    EXPECT_EQ(Picture::ofWindow(*menu).size(), QSizeF(300, 540));
}

TEST_P(MenuLayout, HasItsPartsInTheirOrderOnePointApart)
{
    const auto parts = stackOf(*menu);
    ASSERT_EQ(parts.size(), 5);
    EXPECT_NE(qobject_cast<PopupView*>(parts[0]), nullptr);
    EXPECT_NE(dynamic_cast<Spacer*>(parts[1]), nullptr);
    EXPECT_NE(dynamic_cast<Divider*>(parts[2]), nullptr);
    EXPECT_EQ(parts[3], &commands);
    EXPECT_NE(dynamic_cast<Spacer*>(parts[4]), nullptr);
    int next = 0;
    for (const QWidget* part : parts) {
        EXPECT_EQ(part->geometry().top(), next);
        next = bottomOf(part->geometry()) + 1;
    }
    EXPECT_EQ(next, 540 + 1);
}

TEST_P(MenuLayout, SharesTheRestBetweenItsSpacers)
{
    const auto parts = stackOf(*menu);
    EXPECT_LE(std::abs(parts[1]->height() - parts[4]->height()), 1);
    EXPECT_EQ(
        parts[1]->height() + parts[4]->height(),
        540 - parts[0]->height() - 1 - commands.height() - 4 * 1);
}

TEST_P(MenuLayout, HasADividerAcrossTheWindow)
{
    const QWidget* divider = stackOf(*menu)[2];
    EXPECT_EQ(divider->size(), QSize(300, 1));
    EXPECT_EQ(divider->x(), 0);
}

TEST_P(MenuLayout, HasItsCommandsInTheirOrderInTheirPadding)
{
    const auto parts = stackOf(commands);
    ASSERT_EQ(parts.size(), 4);
    EXPECT_EQ(parts[0], &command("about"));
    EXPECT_EQ(parts[1], &command("openWebsite"));
    EXPECT_NE(dynamic_cast<Divider*>(parts[2]), nullptr);
    EXPECT_EQ(parts[3], &command("quit"));
    int next = 20;
    for (const QWidget* part : parts) {
        EXPECT_EQ(part->x(), 20);
        EXPECT_EQ(part->width(), 300 - 2 * 20);
        EXPECT_EQ(part->y(), next);
        next = bottomOf(part->geometry()) + 8;
    }
    EXPECT_EQ(commands.width(), 300);
    EXPECT_EQ(commands.height(), next - 8 + 20);
}

TEST_P(MenuLayout, HasSmallCommandsWithPaddedTitlesInTheMiddle)
{
    for (const char* name : {"about", "openWebsite", "quit"}) {
        TextButton& button = command(name);
        EXPECT_EQ(button.look().padding, QMargins(20, 10, 20, 10)) << name;
        EXPECT_EQ(button.font().pixelSize(), 11) << name;
        EXPECT_EQ(button.font().weight(), QFont::Normal) << name;
        // The border of the one that has one lies around the padding.
        const QMargins border = button.margins() - button.look().padding;
        EXPECT_EQ(button.height(), border.top() + 10 + 13 + 10 + border.bottom()) << name;
        EXPECT_NEAR(button.labelArea().center().x(), 130, 1) << name;
        EXPECT_EQ(button.labelArea().top(), border.top() + 10) << name;
        EXPECT_EQ(button.look().systemSymbolName, QString()) << name;
    }
}

TEST_P(MenuLayout, HasABorderAroundQuitAlone)
{
    EXPECT_EQ(command("about").look().style, TextButton::Style::plain);
    EXPECT_EQ(command("openWebsite").look().style, TextButton::Style::plain);
    EXPECT_EQ(command("quit").look().style, TextButton::Style::bordered);
    EXPECT_EQ(command("about").margins(), command("about").look().padding);
    EXPECT_EQ(command("quit").margins(), command("quit").look().padding + TextButton::bezel);
}

TEST_P(MenuLayout, StandsOnTheWindowsColorToEveryEdge)
{
    const Picture picture = Picture::ofWindow(*menu);
    EXPECT_EQ(picture.ink(), QRectF(0, 0, 300, 540));
    EXPECT_THAT(picture.at(QPointF(150, 8)), isColor(windowColor(lightPalette())));
    EXPECT_THAT(picture.at(QPointF(10, 530)), isColor(windowColor(lightPalette())));
    for (const QPointF edge :
         {QPointF(150, 0.2), QPointF(150, 539.7), QPointF(0.2, 270), QPointF(299.7, 270)})
    {
        EXPECT_THAT(picture.at(edge), isColor(separatorColor(lightPalette())));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Languages, MenuLayout, testing::Values("en", "de", "ja"), [](const auto& testInfo) {
        return std::string(testInfo.param);
    });

/// How the window's lines come out with that many pixels a point.
class MenuLines : public ViewTestBase, public testing::WithParamInterface<double>
{
protected:
    /// How many pixels of exactly that colour there are from `start` on, in a direction.
    [[nodiscard]] int countFrom(QPointF start, QPointF direction, const QColor& color) const
    {
        const QPointF pixel = direction / GetParam();
        int count = 0;
        while (picture.at(start + count * pixel).rgb() == color.rgb()) {
            ++count;
        }
        return count;
    }

    /// How thick the line is that lies somewhere in the three points behind `start`: its pixels of
    /// exactly that colour, when there is nothing but them between those of two others.
    [[nodiscard]] int
    thickness(QPointF start, QPointF direction, const QColor& before, const QColor& line) const
    {
        const QPointF pixel = direction / GetParam();
        return countFrom(start + countFrom(start, direction, before) * pixel, direction, line);
    }

    const QPalette colors = lightPalette();
    PaletteChange palette{colors};
    std::unique_ptr<QWidget> menu = shownMenu();
    Picture picture = Picture::ofWindow(*menu, GetParam());
    int linePixels = static_cast<int>(GetParam());
};

TEST_P(MenuLines, AreEvenAroundTheWindow)
{
    const QColor line = separatorColor(colors);
    const double last = 1 / GetParam();
    EXPECT_EQ(countFrom({150, 0}, {0, 1}, line), linePixels);
    EXPECT_EQ(countFrom({0, 270}, {1, 0}, line), linePixels);
    EXPECT_EQ(countFrom({150, 540 - last}, {0, -1}, line), linePixels);
    EXPECT_EQ(countFrom({300 - last, 270}, {-1, 0}, line), linePixels);
}

TEST_P(MenuLines, AreEvenAroundTheGroups)
{
    const QColor line = surfaceBorderColor(colors);
    for (const char* name : {"captureOptions", "latestCode"}) {
        const auto& group = named<GroupBox>(*menu, name);
        const QRectF box = QRectF(group.boxArea()).translated(areaIn(*menu, group).topLeft());
        const QColor inside = surfaceColor(colors);
        const QPointF middle = box.center();
        for (const auto& [start, outward] :
             {std::pair(QPointF(middle.x(), box.top() + 3), QPointF(0, -1)),
              std::pair(QPointF(middle.x(), box.bottom() - 3), QPointF(0, 1)),
              std::pair(QPointF(box.left() + 3, middle.y()), QPointF(-1, 0)),
              std::pair(QPointF(box.right() - 3, middle.y()), QPointF(1, 0))})
        {
            EXPECT_EQ(thickness(start, outward, inside, line), linePixels) << name;
        }
    }
}

TEST_P(MenuLines, AreEvenBetweenTheCommands)
{
    for (const QWidget* divider :
         {stackOf(*menu)[2], stackOf(named<QWidget>(*menu, "commands"))[2]}) {
        const QRectF area = areaIn(*menu, *divider);
        EXPECT_EQ(
            thickness(
                {area.center().x(), area.top() - 3},
                {0, 1},
                windowColor(colors),
                separatorColor(colors)),
            linePixels);
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, MenuLines, testing::Values(1, 1.25, 1.5, 1.75, 2, 2.25));

class MenuSize : public ViewTestBase
{};

TEST_F(MenuSize, StaysWhateverTheCode)
{
    const auto menu = shownMenu();
    auto& code = named<CodeLabel>(*menu, "verificationCode");
    for (const char16_t* text : {u"", u"1", u"٤٨٢٩١٣", u"４８２９１３", u"𝟒𝟖𝟐𝟗𝟏𝟑"}) {
        code.setCode(QString::fromUtf16(text));
        QCoreApplication::sendPostedEvents();
        EXPECT_EQ(menu->size(), QSize(300, 540));
        expectNothingClipped(*menu);
    }
}

TEST_F(MenuSize, StaysWhereTheCodeIsFarTooLong)
{
    const auto menu = shownMenu();
    named<CodeLabel>(*menu, "verificationCode").setCode(QString(60, u'8'));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(menu->size(), QSize(300, 540));
    EXPECT_EQ(named<PopupView>(*menu, "panel").width(), 300);
    EXPECT_EQ(named<CodeLabel>(*menu, "verificationCode").width(), 300 - 2 * 16 - 2 * 4);
}

TEST_F(MenuSize, StaysWhateverTheApplicationsFont)
{
    for (const int pointSize : {6, 24, 60}) {
        QFont font;
        font.setPointSize(pointSize);
        font.setBold(true);
        const FontChange change(font);
        const auto menu = shownMenu();
        EXPECT_EQ(menu->size(), QSize(300, 540));
        EXPECT_EQ(named<TextButton>(*menu, "about").height(), 33);
        expectNothingClipped(*menu);
    }
}

TEST_F(MenuSize, StaysWhenTheApplicationsFontChangesWhileItIsShown)
{
    const auto menu = shownMenu();
    QFont font;
    font.setPointSize(40);
    const FontChange change(font);
    QCoreApplication::processEvents();
    EXPECT_EQ(menu->size(), QSize(300, 540));
    EXPECT_EQ(named<TextButton>(*menu, "about").font().pixelSize(), 11);
    EXPECT_EQ(named<CodeLabel>(*menu, "verificationCode").font().pixelSize(), 24);
    expectNothingClipped(*menu);
}

TEST_F(MenuSize, CannotBeChangedFromOutside)
{
    const auto menu = shownMenu();
    menu->resize(400, 700);
    EXPECT_EQ(menu->size(), QSize(300, 540));
}

TEST_F(MenuSize, IsMirroredWithoutACut)
{
    const auto menu = shownMenu();
    menu->setLayoutDirection(Qt::RightToLeft);
    QCoreApplication::processEvents();
    EXPECT_EQ(menu->size(), QSize(300, 540));
    expectNothingClipped(*menu);
}

class MenuTexts : public ViewTestBase
{
protected:
    std::vector<std::string> texts()
    {
        const auto menu = shownMenu();
        std::vector<std::string> found;
        for (const auto* button : named<QWidget>(*menu, "commands").findChildren<TextButton*>()) {
            found.push_back(button->text().toStdString());
        }
        return found;
    }
};

TEST_F(MenuTexts, AreEnglish)
{
    EXPECT_THAT(texts(), testing::ElementsAre("About", "Open website", "Quit"));
}

TEST_F(MenuTexts, AreTranslated)
{
    const LanguageChange japanese(QStringLiteral("ja"));
    EXPECT_THAT(texts(), testing::ElementsAre("Orlimoについて", "Webサイトを開く", "終了"));
}

} // namespace
} // namespace orlimo
