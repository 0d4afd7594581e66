#include "controls/TextButton.h"

#include "controls/SymbolLabel.h"
#include "controls/TextBlock.h"
#include "controls/painting/Colors.h"
#include "platform/desktop/SystemSymbol.h"
#include "tests/support/Await.h"
#include "tests/support/EventCount.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/Pointer.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QAccessible>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

namespace orlimo {
namespace {

const TextButton::Look plain{
    .style = TextButton::Style::plain, .fontPixelSize = 11, .padding = QMargins(20, 10, 20, 10)};
const TextButton::Look bordered{
    .style = TextButton::Style::bordered, .fontPixelSize = 11, .padding = QMargins(20, 10, 20, 10)};
const TextButton::Look withSymbol{
    .style = TextButton::Style::bordered,
    .fontPixelSize = 15,
    .padding = QMargins(5, 5, 5, 5),
    .systemSymbolName = QStringLiteral("hand.raised.fill"),
    .symbols = {.draw = systemSymbol, .size = systemSymbolSize}};

const QString quit = QStringLiteral("Quit");

/// A point of the button that has neither text nor a rounded corner.
constexpr QPointF surfacePoint(10, 16);

/// The surface's colour as it is seen on the window.
QColor surfaceOf(QWidget& button)
{
    return blended(Picture::of(button).at(surfacePoint), windowColor(button.palette()));
}

/// Text's colour over the window's.
QColor textAt(float opacity)
{
    QColor color = textColor(lightPalette());
    color.setAlphaF(opacity);
    return blended(color, windowColor(lightPalette()));
}

class TextButtonTest : public testing::Test
{
protected:
    PaletteChange palette{lightPalette()};
};

TEST_F(TextButtonTest, IsItsLabelWithThePaddingAround)
{
    const TextButton button(quit, plain);
    const QSize label = TextBlock(quit, button.font()).size().toSize();
    EXPECT_EQ(button.sizeHint(), label + QSize(40, 20));
    EXPECT_EQ(button.sizeHint().height(), 33);
    EXPECT_EQ(button.font().pixelSize(), 11);
}

TEST_F(TextButtonTest, BorderedHasABezelAroundItsPadding)
{
    const TextButton without(quit, plain);
    const TextButton with(quit, bordered);
    EXPECT_EQ(with.sizeHint(), without.sizeHint() + QSize(16, 2));
    EXPECT_EQ(with.minimumSizeHint(), without.minimumSizeHint() + QSize(16, 2));
}

TEST_F(TextButtonTest, CentresItsLabel)
{
    TextButton button(quit, plain);
    button.resize(260, 33);
    EXPECT_NEAR(button.labelArea().center().x(), 130, 1);
    EXPECT_EQ(button.labelArea().top(), 10);
    EXPECT_EQ(button.labelArea().height(), 13);
    EXPECT_NEAR(Picture::of(button).ink().center().x(), 130, 1.5);
}

TEST_F(TextButtonTest, PutsItsSymbolBeforeTheText)
{
    TextButton button(QStringLiteral("Open System Setting"), withSymbol);
    button.resize(button.sizeHint());
    const QSize symbol = systemSymbolSize(u"hand.raised.fill", 15);
    const QSize text = TextBlock(button.text(), button.font()).size().toSize();
    EXPECT_EQ(
        button.sizeHint(),
        QSize(13 + symbol.width() + SymbolLabel::gap + text.width() + 13, 6 + 18 + 6));
    EXPECT_EQ(button.labelArea(), QRectF(13, 6, symbol.width() + 6 + text.width(), 18));
}

TEST_F(TextButtonTest, DrawsItsSymbolInTheTextsColor)
{
    TextButton::Look look = withSymbol;
    look.style = TextButton::Style::plain;
    TextButton button(QStringLiteral("Open System Setting"), look);
    button.resize(button.sizeHint());
    const Picture picture = Picture::of(button);
    const QSize size = systemSymbolSize(u"hand.raised.fill", 15);
    const double scale = picture.pixelsPerPoint();
    const Picture symbol = Picture::drawn(button.size(), scale, [&](QPainter& painter) {
        const int top = (button.height() - size.height()) / 2;
        painter.drawPixmap(
            look.padding.left(),
            top,
            systemSymbol(u"hand.raised.fill", 15, textColor(lightPalette()), scale));
    });
    EXPECT_GE(picture.differenceFrom(symbol).left(), 5 + size.width() + SymbolLabel::gap - 1);
}

TEST_F(TextButtonTest, MirrorsSymbolAndText)
{
    TextButton button(QStringLiteral("Open System Setting"), withSymbol);
    button.resize(button.sizeHint());
    TextButton mirrored(button.text(), withSymbol);
    mirrored.resize(button.sizeHint());
    mirrored.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(mirrored.labelArea(), button.labelArea());
    EXPECT_NE(Picture::of(mirrored).differenceFrom(Picture::of(button)), QRectF());
    expectNothingClipped(mirrored);
}

TEST_F(TextButtonTest, NarrowedShrinksItsTextAndKeepsItsPadding)
{
    TextButton button(QStringLiteral("Open System Setting"), withSymbol);
    button.resize(button.sizeHint());
    expectNothingClipped(button);
    for (const int width : {180, 150, 125}) {
        button.resize(width, button.sizeHint().height());
        expectNothingClipped(button);
    }
}

TEST_F(TextButtonTest, PlainIsNothingButItsLabel)
{
    TextButton button(quit, plain);
    button.resize(260, 33);
    EXPECT_TRUE(button.labelArea().adjusted(-1, 0, 1, 0).contains(Picture::of(button).ink()));
}

TEST_F(TextButtonTest, BorderedHasASurfaceWithRoundCorners)
{
    TextButton button(quit, bordered);
    button.resize(260, 33);
    const Picture picture = Picture::of(button);
    EXPECT_EQ(picture.ink(), QRectF(0, 0, 260, 33));
    EXPECT_EQ(picture.at(QPointF(0.3, 0.3)).alpha(), 0);
    EXPECT_EQ(picture.at(QPointF(259.7, 32.7)).alpha(), 0);
    EXPECT_THAT(surfaceOf(button), isColor(textAt(0.08F)));
}

/// The colour in the middle of the button's upper edge.
QColor edgeOf(QWidget& button)
{
    return Picture::of(button).at(QPointF(button.width() / 2.0, 0.3));
}

TEST_F(TextButtonTest, BorderedHasAnOutlineInEveryScheme)
{
    for (const QPalette& scheme : allPalettes()) {
        const PaletteChange change(scheme);
        for (const auto& look : {bordered, withSymbol}) {
            TextButton button(quit, look);
            button.resize(button.sizeHint());
            EXPECT_THAT(edgeOf(button), isColor(controlBorderColor(scheme)));
        }
    }
}

TEST_F(TextButtonTest, PlainHasAnOutlineUnderThePointerInAHighContrastPalette)
{
    for (const QPalette& scheme : allPalettes()) {
        const PaletteChange change(scheme);
        WidgetWindow<TextButton> button(quit, plain);
        pointer::moveTo(button.window, QPoint(3, 3));
        EXPECT_EQ(edgeOf(*button).alpha(), 0);
        pointer::moveTo(*button, QPoint(10, 16));
        EXPECT_EQ(edgeOf(*button).alpha() == 255, isHighContrast(scheme));
    }
}

TEST_F(TextButtonTest, IsLegibleOnItsSurface)
{
    for (const QPalette& scheme : {lightPalette(), darkPalette()}) {
        const PaletteChange change(scheme);
        TextButton button(quit, bordered);
        button.resize(260, 33);
        EXPECT_GE(contrastRatio(textColor(scheme), surfaceOf(button)), legibleContrast);
    }
}

TEST_F(TextButtonTest, AnswersToThePointer)
{
    for (const auto& [look, rest, hover] :
         {std::tuple(plain, 0.0F, 0.06F), std::tuple(bordered, 0.08F, 0.12F)})
    {
        WidgetWindow<TextButton> button(quit, look);
        pointer::moveTo(button.window, QPoint(3, 3));
        EXPECT_THAT(surfaceOf(*button), isColor(textAt(rest)));
        pointer::moveTo(*button, QPoint(10, 16));
        EXPECT_THAT(surfaceOf(*button), isColor(textAt(hover)));
        pointer::press(*button, QPoint(10, 16));
        EXPECT_THAT(surfaceOf(*button), isColor(textAt(0.16F)));
        pointer::release(*button, QPoint(10, 16));
        EXPECT_THAT(surfaceOf(*button), isColor(textAt(hover)));
        pointer::leave(button.window);
        EXPECT_THAT(surfaceOf(*button), isColor(textAt(rest)));
    }
}

TEST_F(TextButtonTest, IsRepaintedWhenThePointerComesAndGoes)
{
    WidgetWindow<TextButton> button(quit, plain);
    pointer::moveTo(button.window, QPoint(3, 3));
    const EventCount paints(QEvent::Paint);
    pointer::moveTo(*button, QPoint(10, 16));
    EXPECT_TRUE(await([&] { return paints.count() > 0; }));
    const int before = paints.count();
    pointer::moveTo(button.window, QPoint(3, 3));
    EXPECT_TRUE(await([&] { return paints.count() > before; }));
}

TEST_F(TextButtonTest, IsClickedByPointerAndKeyboard)
{
    WidgetWindow<TextButton> button(quit, plain);
    QSignalSpy clicked(&*button, &TextButton::clicked);
    pointer::click(*button, QPoint(2, 2));
    EXPECT_EQ(clicked.count(), 1);
    QTest::keyClick(&button.window, Qt::Key_Tab);
    ASSERT_TRUE(button->hasFocus());
    int expected = 1;
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&*button, key);
        EXPECT_EQ(clicked.count(), ++expected) << key;
    }
}

TEST_F(TextButtonTest, FollowsAChangeOfPalette)
{
    for (const auto& look : {plain, bordered, withSymbol}) {
        TextButton button(quit, look);
        button.resize(button.sizeHint());
        const Picture light = Picture::of(button);
        const PaletteChange dark(darkPalette());
        EXPECT_NE(Picture::of(button).differenceFrom(light), QRectF());
        TextButton fresh(quit, look);
        fresh.resize(fresh.sizeHint());
        EXPECT_EQ(Picture::of(button).differenceFrom(Picture::of(fresh)), QRectF());
    }
}

TEST_F(TextButtonTest, IsAnnouncedAsAButton)
{
    TextButton button(quit, plain);
    auto* accessible = QAccessible::queryAccessibleInterface(&button);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Name), quit);
}

} // namespace
} // namespace orlimo
