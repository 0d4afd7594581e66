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

#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

namespace orlimo {
namespace {

using Style = TextButton::Style;

const TextButton::Look plain{
    .style = Style::plain, .fontPixelSize = 11, .padding = QMargins(20, 10, 20, 10)};
const TextButton::Look bordered{
    .style = Style::bordered, .fontPixelSize = 11, .padding = QMargins(20, 10, 20, 10)};
const TextButton::Look withSymbol{
    .style = Style::bordered,
    .fontPixelSize = 15,
    .padding = QMargins(5, 5, 5, 5),
    .systemSymbolName = QStringLiteral("hand.raised.fill"),
    .symbols = {.draw = systemSymbol, .size = systemSymbolSize}};

const QString quit = QStringLiteral("Quit");

/// A point of the button that has neither text nor a rounded corner.
constexpr QPointF surfacePoint(10, 16);

/// The surface's color as it is seen on the window.
QColor surfaceOf(QWidget& button)
{
    return blended(Picture::of(button).at(surfacePoint), windowColor(button.palette()));
}

/// Text's color over the window's.
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

TEST_F(TextButtonTest, IsLabelInPaddingAndBezel)
{
    TextButton without(quit, plain);
    const TextButton with(quit, bordered);
    const QSize label = TextBlock(quit, without.font()).size().toSize();
    EXPECT_EQ(without.font().pixelSize(), 11);
    EXPECT_EQ(without.sizeHint(), label + QSize(40, 20));
    EXPECT_EQ(without.sizeHint().height(), 33);
    EXPECT_EQ(with.sizeHint(), without.sizeHint() + QSize(16, 2));
    EXPECT_EQ(with.minimumSizeHint(), without.minimumSizeHint() + QSize(16, 2));
    without.resize(260, 33);
    EXPECT_NEAR(without.labelArea().center().x(), 130, 1);
    EXPECT_EQ(without.labelArea().top(), 10);
    EXPECT_EQ(without.labelArea().height(), 13);
    const QRectF ink = Picture::of(without).ink();
    EXPECT_NEAR(ink.center().x(), 130, 1.5);
    EXPECT_TRUE(without.labelArea().adjusted(-1, 0, 1, 0).contains(ink)) << "nothing but its label";
}

TEST_F(TextButtonTest, HasSymbolBeforeTextInItsColor)
{
    TextButton::Look look = withSymbol;
    look.style = Style::plain;
    TextButton button(QStringLiteral("Open System Setting"), look);
    const QSize size = systemSymbolSize(u"hand.raised.fill", 15);
    const QSize text = TextBlock(button.text(), button.font()).size().toSize();
    const int width = size.width() + SymbolLabel::gap + text.width();
    EXPECT_EQ(button.sizeHint(), QSize(5 + width + 5, 5 + 18 + 5));
    button.resize(button.sizeHint());
    EXPECT_EQ(button.labelArea(), QRectF(5, 5, width, 18));
    const Picture picture = Picture::of(button);
    const double scale = picture.pixelsPerPoint();
    const Picture symbol = Picture::drawn(button.size(), scale, [&](QPainter& painter) {
        const int top = (button.height() - size.height()) / 2;
        painter.drawPixmap(
            5, top, systemSymbol(u"hand.raised.fill", 15, textColor(lightPalette()), scale));
    });
    EXPECT_GE(picture.differenceFrom(symbol).left(), 5 + size.width() + SymbolLabel::gap - 1);
    button.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(button.labelArea(), QRectF(5, 5, width, 18));
    EXPECT_NE(Picture::of(button).differenceFrom(picture), QRectF());
    expectNothingClipped(button);
}

TEST_F(TextButtonTest, ShrinksItsTextWhenNarrowed)
{
    TextButton button(QStringLiteral("Open System Setting"), withSymbol);
    for (const int width : {button.sizeHint().width(), 180, 150, 125}) {
        button.resize(width, button.sizeHint().height());
        expectNothingClipped(button);
    }
}

/// The color in the middle of the button's upper edge.
QColor edgeOf(QWidget& button)
{
    return Picture::of(button).at(QPointF(button.width() / 2.0, 0.3));
}

TEST_F(TextButtonTest, HasOutlineAndLegibleTextInEveryScheme)
{
    for (const QPalette& scheme : allPalettes()) {
        const PaletteChange change(scheme);
        for (const auto& look : {bordered, withSymbol}) {
            TextButton button(quit, look);
            button.resize(button.sizeHint());
            EXPECT_THAT(edgeOf(button), isColor(controlBorderColor(scheme)));
            EXPECT_EQ(Picture::of(button).ink(), QRectF(QPointF(), button.size()));
            EXPECT_EQ(Picture::of(button).at(QPointF(0.3, 0.3)).alpha(), 0) << "a round corner";
            EXPECT_GE(contrastRatio(textColor(scheme), surfaceOf(button)), legibleContrast);
        }
        WidgetWindow<TextButton> button(quit, plain);
        pointer::moveTo(button.window, QPoint(3, 3));
        EXPECT_EQ(edgeOf(*button).alpha(), 0);
        pointer::moveTo(*button, QPoint(10, 16));
        EXPECT_EQ(edgeOf(*button).alpha() == 255, isHighContrast(scheme));
    }
}

TEST_F(TextButtonTest, ShowsPointerAndPress)
{
    for (const auto& [look, rest, hover] :
         {std::tuple(plain, 0.0F, 0.06F), std::tuple(bordered, 0.08F, 0.12F)})
    {
        WidgetWindow<TextButton> button(quit, look);
        const QPoint onButton = button->pos() + QPoint(10, 16);
        const auto expectSurface = [&](float opacity) {
            EXPECT_THAT(surfaceOf(*button), isColor(textAt(opacity)));
        };
        const auto expectRepainted = [&](QPoint position) {
            const EventCount paints(QEvent::Paint);
            pointer::moveTo(button.window, position);
            EXPECT_TRUE(await([&] { return paints.count() > 0; }));
        };
        pointer::moveTo(button.window, QPoint(3, 3));
        expectSurface(rest);
        expectRepainted(onButton);
        expectSurface(hover);
        pointer::press(button.window, onButton);
        expectSurface(0.16F);
        pointer::release(button.window, onButton);
        expectSurface(hover);
        expectRepainted(QPoint(3, 3));
        expectSurface(rest);
        pointer::moveTo(button.window, onButton);
        pointer::leave(button.window);
        expectSurface(rest);
    }
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

} // namespace
} // namespace orlimo
