#include "app/panel/CodeLabel.h"
#include "app/panel/CopyButton.h"
#include "app/panel/OptionRow.h"
#include "app/panel/PopupView.h"
#include "controls/GroupBox.h"
#include "controls/Switch.h"
#include "controls/SymbolLabel.h"
#include "controls/TextLabel.h"
#include "tests/app/Appearance.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orlimo {
namespace {

/// The distance between two areas, one above the other.
int gapBelow(const QRect& upper, const QRect& lower)
{
    return lower.top() - (upper.top() + upper.height());
}

/// The code panel as it stands in the menu-bar window, by language.
class PanelLayout : public ViewTestBase, public testing::WithParamInterface<const char*>
{
protected:
    OptionRow& row(const char* name)
    {
        return *qobject_cast<OptionRow*>(named<Switch>(*menu, name).parentWidget());
    }

    [[nodiscard]] QRect area(const QWidget& widget) const { return areaIn(panel, widget); }

    /// How wide the group boxes' content is.
    static constexpr int contentWidth = 300 - 2 * 16 - 2 * GroupBox::contentPadding;

    PaletteChange palette{lightPalette()};
    LanguageChange language{QLatin1String(GetParam())};
    std::unique_ptr<QWidget> menu = shownMenu();
    PopupView& panel = named<PopupView>(*menu, "panel");
    GroupBox& options = named<GroupBox>(*menu, "captureOptions");
    GroupBox& latest = named<GroupBox>(*menu, "latestCode");
    CodeLabel& code = named<CodeLabel>(*menu, "verificationCode");
    CopyButton& copy = named<CopyButton>(*menu, "copy");
};

TEST_P(PanelLayout, HasItsGroupsOneUnderTheOtherInTheDefaultPadding)
{
    EXPECT_EQ(panel.width(), 300);
    EXPECT_EQ(area(options).topLeft(), QPoint(16, 16));
    EXPECT_EQ(area(options).width(), 300 - 2 * 16);
    EXPECT_EQ(area(latest).left(), 16);
    EXPECT_EQ(area(latest).width(), 300 - 2 * 16);
    EXPECT_EQ(gapBelow(area(options), area(latest)), 25);
    EXPECT_EQ(panel.height() - (area(latest).top() + area(latest).height()), 16);
}

TEST_P(PanelLayout, HasGrayTitlesWithTheirSymbols)
{
    for (const auto& [group, symbol] :
         {std::pair(&options, "slider.horizontal.2.square"),
          std::pair(&latest, "ellipsis.bubble.fill")})
    {
        const TextLabel& title = group->title().textLabel();
        EXPECT_EQ(group->title().symbolName(), QLatin1String(symbol));
        EXPECT_FALSE(group->title().symbolArea().isEmpty());
        EXPECT_EQ(title.font().pixelSize(), 15);
        EXPECT_EQ(title.font().weight(), QFont::Normal);
        EXPECT_FALSE(title.font().italic());
        EXPECT_EQ(title.paintedColor(), grayColor(lightPalette()));
        EXPECT_EQ(areaIn(*group, group->title()).topLeft(), QPoint(0, 0));
    }
}

TEST_P(PanelLayout, HasThreeRowsInTheirOrder)
{
    const auto rows = options.findChildren<OptionRow*>();
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0], &row("capturingEnabled"));
    EXPECT_EQ(rows[1], &row("fourDigitInclude"));
    EXPECT_EQ(rows[2], &row("loginItemEnabled"));
    const int left = 16 + GroupBox::contentPadding;
    const int top = 16 + options.boxArea().top() + GroupBox::contentPadding;
    for (int number = 0; number < 3; ++number) {
        EXPECT_EQ(
            area(*rows[number]), QRect(left, top + number * (34 + 8), contentWidth, 7 + 20 + 7));
    }
}

TEST_P(PanelLayout, HasInEachRowATextThenASwitch)
{
    for (const char* name : {"capturingEnabled", "fourDigitInclude", "loginItemEnabled"}) {
        OptionRow& option = row(name);
        const QRect text = areaIn(option, option.text());
        const QRect toggle = areaIn(option, option.toggle());
        EXPECT_EQ(text.left(), 7) << name;
        EXPECT_EQ(option.width() - (toggle.left() + toggle.width()), 7) << name;
        EXPECT_EQ(toggle.size(), QSize(36, 20)) << name;
        EXPECT_EQ(toggle.top(), 7) << name;
        EXPECT_EQ(text.height(), 16) << name;
        EXPECT_EQ(text.top(), 7 + 2) << name;
        EXPECT_GE(toggle.left() - (text.left() + text.width()), 2 * 8) << name;
        EXPECT_EQ(option.text().font().pixelSize(), 13) << name;
        EXPECT_EQ(option.text().font().weight(), QFont::Normal) << name;
        EXPECT_EQ(option.text().paintedColor(), textColor(lightPalette())) << name;
    }
}

TEST_P(PanelLayout, FramesTheTextsOfTheSecondAndThirdRowOnly)
{
    EXPECT_EQ(row("capturingEnabled").text().minimumWidth(), 0);
    EXPECT_EQ(row("fourDigitInclude").text().minimumWidth(), 120);
    EXPECT_EQ(row("loginItemEnabled").text().minimumWidth(), 120);
    for (const char* name : {"capturingEnabled", "fourDigitInclude", "loginItemEnabled"}) {
        const TextLabel& text = row(name).text();
        EXPECT_EQ(text.textArea().left(), 0) << name;
        EXPECT_EQ(text.width(), std::max(text.minimumWidth(), text.sizeHint().width())) << name;
    }
}

TEST_P(PanelLayout, ShowsTheCodeLargeAndSpaced)
{
    const QFont font = code.font();
    EXPECT_EQ(font.pixelSize(), 24);
    EXPECT_EQ(font.weight(), QFont::ExtraBold);
    EXPECT_EQ(font.letterSpacingType(), QFont::AbsoluteSpacing);
    EXPECT_EQ(font.letterSpacing(), 3);
    EXPECT_EQ(code.contentsMargins().top(), 20);
    EXPECT_EQ(code.contentsMargins().bottom(), 0);
    EXPECT_EQ(code.alignment(), Qt::AlignCenter);
    EXPECT_EQ(code.text(), QStringLiteral("482913"));
}

TEST_P(PanelLayout, GivesTheCodeTheWholeWidth)
{
    const QRect box = options.boxArea();
    EXPECT_EQ(box.width(), 300 - 2 * 16);
    EXPECT_EQ(
        areaIn(latest, code),
        QRect(
            latest.boxArea().topLeft() + QPoint(4, GroupBox::contentPadding),
            QSize(contentWidth, 20 + 29)));
}

TEST_P(PanelLayout, PaintsTheCodeInTheMiddleBelowItsPadding)
{
    const QRectF ink = Picture::of(code).ink();
    EXPECT_GE(ink.top(), 20);
    EXPECT_NEAR(ink.center().y(), 20 + 29 / 2.0, 2);
    for (const char16_t* text : {u"482913", u"1117", u"71111", u"٤٨٢٩١٣", u"４８２９"}) {
        code.setCode(QString::fromUtf16(text));
        EXPECT_NEAR(Picture::of(code).ink().center().x(), contentWidth / 2.0, 0.75)
            << code.text().toStdString();
    }
}

TEST_P(PanelLayout, SpacesTheCodesDigits)
{
    const double spaced = Picture::of(code).ink().width();
    QFont font = code.font();
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    code.setFont(font);
    EXPECT_NEAR(spaced - Picture::of(code).ink().width(), 5 * 3, 1.5);
}

TEST_P(PanelLayout, HasTheCopyButtonInTheMiddleUnderTheCode)
{
    EXPECT_EQ(copy.size(), QSize(140 + 2 * 16, 40 + 2 * 16));
    EXPECT_EQ(copy.pillArea(), QRect(16, 16, 140, 40));
    EXPECT_EQ(gapBelow(areaIn(latest, code), areaIn(latest, copy)), 8);
    EXPECT_EQ(areaIn(latest, copy).left() * 2 + copy.width(), latest.width());
    EXPECT_EQ(
        gapBelow(areaIn(latest, copy), latest.rect().translated(0, latest.height())),
        GroupBox::contentPadding);
    EXPECT_EQ(copy.font().pixelSize(), 15);
    EXPECT_EQ(copy.font().weight(), QFont::Normal);
}

TEST_P(PanelLayout, HasNothingElse)
{
    EXPECT_EQ(panel.findChildren<GroupBox*>(Qt::FindDirectChildrenOnly).size(), 2);
    EXPECT_EQ(panel.findChildren<Switch*>().size(), 3);
    EXPECT_EQ(panel.findChildren<QAbstractButton*>().size(), 3 + 1);
    EXPECT_EQ(panel.findChildren<QLabel*>().size(), 2 + 3 + 1);
}

INSTANTIATE_TEST_SUITE_P(
    Languages, PanelLayout, testing::Values("en", "de", "ja"), [](const auto& testInfo) {
        return std::string(testInfo.param);
    });

/// The texts of a panel in the language of the moment.
class PanelTexts : public ViewTestBase
{
protected:
    /// Titles, rows and button, from top to bottom.
    std::vector<std::string> texts()
    {
        const auto menu = shownMenu();
        std::vector<std::string> found;
        for (const auto* label :
             named<GroupBox>(*menu, "captureOptions").findChildren<TextLabel*>()) {
            found.push_back(label->text().toStdString());
        }
        for (const auto* label : named<GroupBox>(*menu, "latestCode").findChildren<TextLabel*>()) {
            found.push_back(label->text().toStdString());
        }
        found.push_back(named<CopyButton>(*menu, "copy").text().toStdString());
        return found;
    }
};

TEST_F(PanelTexts, AreEnglish)
{
    EXPECT_THAT(
        texts(),
        testing::ElementsAre(
            "Capture Options",
            "Auto Copy to Clipboard",
            "Include 4 digit code",
            "Launch at login",
            "Latest Code",
            "Copy"));
}

TEST_F(PanelTexts, AreTranslated)
{
    const LanguageChange german(QStringLiteral("de"));
    EXPECT_THAT(
        texts(),
        testing::ElementsAre(
            "Erfassungsoptionen",
            "Automatisch kopieren",
            "4-stellige Codes erfassen",
            "Bei der Anmeldung öffnen",
            "Neuester Code",
            "Kopieren"));
}

} // namespace
} // namespace orlimo
