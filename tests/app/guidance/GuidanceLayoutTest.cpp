#include "app/guidance/GuidanceWindow.h"
#include "app/guidance/HelperView.h"
#include "controls/ImageView.h"
#include "controls/Spacer.h"
#include "controls/TextBlock.h"
#include "controls/TextButton.h"
#include "controls/TextLabel.h"
#include "controls/painting/Colors.h"
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

#include <cstdlib>

namespace orlimo {
namespace {

/// The guidance window, by language.
class GuidanceLayout : public testing::TestWithParam<const char*>
{
protected:
    GuidanceLayout() { showActive(window); }

    [[nodiscard]] QRect area(const char* name) const
    {
        return areaIn(window, named<QWidget>(window, name));
    }

    TextLabel& label(const char* name) { return named<TextLabel>(window, name); }

    PaletteChange palette{lightPalette()};
    LanguageChange language{QLatin1String(GetParam())};
    HelperView* view =
        new HelperView([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize});
    GuidanceWindow window{view, QRect(QPoint(30, 40), GuidanceWindow::contentSize)};
};

TEST_P(GuidanceLayout, Is500By500)
{
    EXPECT_EQ(window.size(), QSize(500, 500));
    EXPECT_EQ(window.minimumSize(), QSize(500, 500));
    EXPECT_EQ(window.maximumSize(), QSize(500, 500));
    EXPECT_EQ(window.geometry().topLeft(), QPoint(30, 40));
    EXPECT_EQ(areaIn(window, *view), QRect(0, 0, 500, 500));
}

TEST_P(GuidanceLayout, HasTheProgramsIconInTheListOfWindows)
{
    EXPECT_EQ(
        window.windowIcon().pixmap(64).toImage(),
        imageIcon(QStringLiteral("logo")).pixmap(64).toImage());
}

TEST_P(GuidanceLayout, HasEightElementsInTheirOrderInTheMiddle)
{
    QLayout& stack = *view->layout();
    ASSERT_EQ(stack.count(), 8);
    const char* const names[] = {
        "logo", "title", "explanation", "instruction", "", "helper", "", "buttonFrame"};
    int next = 16;
    for (int number = 0; number < 8; ++number) {
        const QWidget& element = *stack.itemAt(number)->widget();
        EXPECT_EQ(element.objectName(), QLatin1String(names[number]));
        EXPECT_EQ(element.objectName().isEmpty(), dynamic_cast<const Spacer*>(&element) != nullptr);
        EXPECT_EQ(element.y(), next) << names[number];
        if (!element.objectName().isEmpty()) {
            EXPECT_LE(std::abs(2 * element.x() + element.width() - 500), 1) << names[number];
        }
        next = element.y() + element.height() + 5;
    }
    EXPECT_EQ(next, 500 - 16 + 5);
}

TEST_P(GuidanceLayout, SharesTheRestBetweenItsSpacers)
{
    const int above = view->layout()->itemAt(4)->widget()->height();
    const int below = view->layout()->itemAt(6)->widget()->height();
    EXPECT_GE(above, 0);
    EXPECT_LE(std::abs(above - below), 1);
}

TEST_P(GuidanceLayout, StretchesItsImagesToTheirFrames)
{
    EXPECT_EQ(area("logo").size(), QSize(100, 100));
    EXPECT_EQ(area("helper").size(), QSize(200, 131));
    EXPECT_EQ(named<ImageView>(window, "logo").imageName(), QStringLiteral("logo"));
    EXPECT_EQ(named<ImageView>(window, "helper").imageName(), QStringLiteral("helper"));
    for (const char* name : {"logo", "helper"}) {
        const QRectF ink = Picture::of(named<ImageView>(window, name)).ink();
        EXPECT_GT(ink.width(), area(name).width() * 0.8) << name;
        EXPECT_GT(ink.height(), area(name).height() * 0.8) << name;
    }
}

TEST_P(GuidanceLayout, HasALargeBoldWhiteTitle)
{
    const TextLabel& title = label("title");
    EXPECT_EQ(title.font().pixelSize(), 28);
    EXPECT_EQ(title.font().weight(), QFont::Bold);
    EXPECT_EQ(title.paintedColor(), QColor(Qt::white));
    EXPECT_EQ(title.minimumWidth(), 320);
    EXPECT_EQ(title.maximumWidth(), 320);
    EXPECT_EQ(title.size(), QSize(320, 34));
    EXPECT_NEAR(title.textArea().center().x(), 160, 1);
}

TEST_P(GuidanceLayout, HasAWhiteExplanationAndAGrayInstruction)
{
    for (const char* name : {"explanation", "instruction"}) {
        const TextLabel& paragraph = label(name);
        EXPECT_EQ(paragraph.font().pixelSize(), 14) << name;
        EXPECT_EQ(paragraph.font().weight(), QFont::Normal) << name;
        EXPECT_EQ(paragraph.minimumWidth(), 420) << name;
        EXPECT_EQ(paragraph.maximumWidth(), 420) << name;
        EXPECT_NEAR(paragraph.textArea().center().x(), 210, 1) << name;
    }
    EXPECT_EQ(label("explanation").paintedColor(), QColor(Qt::white));
    const QColor gray = label("instruction").paintedColor();
    EXPECT_LT(gray.lightnessF(), 0.8);
    EXPECT_LT(gray.hsvSaturation(), 20);
}

TEST_P(GuidanceLayout, WrapsItsParagraphsOntoAsManyLinesAsNeeded)
{
    for (const char* name : {"explanation", "instruction"}) {
        const TextLabel& paragraph = label(name);
        const TextBlock whole(paragraph.text(), paragraph.font());
        ASSERT_GT(whole.size().width(), 420) << name;
        EXPECT_EQ(paragraph.height(), paragraph.heightForWidth(420)) << name;
        EXPECT_GE(paragraph.height(), 2 * 17) << name;
        EXPECT_EQ(paragraph.height() % 17, 0) << name;
        EXPECT_EQ(paragraph.textArea().height(), paragraph.height()) << name;
        EXPECT_LE(paragraph.textArea().width(), 420) << name;
    }
}

TEST_P(GuidanceLayout, HasAButtonWithItsSymbolInTwoPaddings)
{
    const TextButton& button = named<TextButton>(window, "openSystemSetting");
    EXPECT_EQ(button.look().style, TextButton::Style::bordered);
    EXPECT_EQ(button.look().systemSymbolName, QStringLiteral("hand.raised.fill"));
    EXPECT_EQ(button.font().pixelSize(), 15);
    EXPECT_EQ(button.font().weight(), QFont::Normal);
    // Five points around the label, and the bordered style's own edge around those.
    EXPECT_EQ(button.look().padding, QMargins(5, 5, 5, 5));
    EXPECT_EQ(button.margins(), QMargins(5 + 8, 5 + 1, 5 + 8, 5 + 1));
    const QRect frame = area("buttonFrame");
    EXPECT_EQ(areaIn(window, button), frame.marginsRemoved({16, 16, 16, 16}));
    EXPECT_EQ(button.size(), button.sizeHint());
}

TEST_P(GuidanceLayout, IsLegibleInEveryScheme)
{
    for (const QPalette& scheme : {lightPalette(), darkPalette()}) {
        const PaletteChange change(scheme);
        GuidanceWindow fresh(
            new HelperView([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize}),
            QRect(QPoint(30, 40), GuidanceWindow::contentSize));
        for (GuidanceWindow* shown : {&window, &fresh}) {
            const Picture picture = Picture::ofWindow(*shown);
            const QColor ground = picture.at(QPointF(3, 3));
            EXPECT_EQ(ground.alpha(), 255);
            EXPECT_LT(ground.lightnessF(), 0.25);
            const auto labels = shown->findChildren<TextLabel*>();
            EXPECT_EQ(labels.size(), 3);
            for (const TextLabel* text : labels) {
                const QRect place = areaIn(*shown, *text);
                EXPECT_EQ(picture.at(place.topLeft() + QPointF(0.5, 0.5)), ground);
                EXPECT_GE(contrastRatio(text->paintedColor(), ground), legibleContrast)
                    << text->text().toStdString();
            }
            auto& button = named<TextButton>(*shown, "openSystemSetting");
            const QPointF besideLabel = areaIn(*shown, button).topLeft() + QPointF(8, 15);
            EXPECT_NE(picture.at(besideLabel), ground);
            EXPECT_GE(
                contrastRatio(textColor(button.palette()), picture.at(besideLabel)),
                legibleContrast);
        }
    }
}

TEST_P(GuidanceLayout, IsAnnouncedUnderTheProgramsName)
{
    auto* accessible = QAccessible::queryAccessibleInterface(&window);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Window);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Orlimo"));
}

TEST_P(GuidanceLayout, IsNotClipped)
{
    expectNothingClipped(window);
}

INSTANTIATE_TEST_SUITE_P(
    Languages, GuidanceLayout, testing::Values("en", "de", "ja"), [](const auto& testInfo) {
        return std::string(testInfo.param);
    });

TEST(GuidanceTexts, AreExact)
{
    const HelperView view([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize});
    EXPECT_EQ(named<TextLabel>(view, "title").text(), QStringLiteral("Allow acess"));
    EXPECT_EQ(named<TextLabel>(view, "title").text().size(), 11);
    EXPECT_EQ(
        named<TextLabel>(view, "explanation").text(),
        QStringLiteral(
            "Full Disk Access is required to read the verification code from Messages."));
    EXPECT_EQ(
        named<TextLabel>(view, "instruction").text(),
        QStringLiteral("open System Preferences > Security & Privacy > Full Disk Access and allow "
                       "Orlimo in the list."));
    EXPECT_EQ(
        named<TextButton>(view, "openSystemSetting").text(), QStringLiteral("Open System Setting"));
}

TEST(GuidanceTexts, AreTranslated)
{
    const LanguageChange german(QStringLiteral("de"));
    const HelperView view([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize});
    EXPECT_EQ(named<TextLabel>(view, "title").text(), QStringLiteral("Zugriff erlauben"));
    EXPECT_EQ(
        named<TextButton>(view, "openSystemSetting").text(),
        QStringLiteral("Systemeinstellungen öffnen"));
}

TEST(HelperViewBackground, IsLeftToTheWindow)
{
    HelperView view([](const QUrl&) { return true; }, {systemSymbol, systemSymbolSize});
    view.resize(500, 500);
    const Picture picture = Picture::of(view);
    EXPECT_EQ(picture.at(QPointF(2, 2)).alpha(), 0);
    EXPECT_EQ(picture.at(QPointF(498, 498)).alpha(), 0);
    EXPECT_EQ(picture.at(QPointF(20, 250)).alpha(), 0);
    EXPECT_FALSE(view.autoFillBackground());
}

} // namespace
} // namespace orlimo
