#include "platform/menubar/MenuBarWindow.h"

#include "tests/support/Await.h"
#include "tests/support/ManualClock.h"

#include <QApplication>
#include <QCursor>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// What the window holds: a text to write in.
class Content final : public QWidget
{
public:
    Content()
    {
        setFixedSize(300, 540);
        (new QVBoxLayout(this))->addWidget(&field);
    }

    QLineEdit field;
};

class MenuBarWindowTest : public testing::Test
{
protected:
    /// Opens the window and waits until it has the focus.
    void open()
    {
        window->open();
        ASSERT_TRUE(awaitFocus());
    }

    [[nodiscard]] bool awaitFocus()
    {
        return await([this] { return content.isActiveWindow(); });
    }

    /// Gives the focus to another window, as a click on that would.
    void focusOtherWindow()
    {
        other.show();
        other.activateWindow();
        ASSERT_TRUE(await([this] { return other.isActiveWindow(); }));
    }

    void pointerEnters()
    {
        QEnterEvent event(QPointF(10, 10), QPointF(10, 10), QPointF(10, 10));
        QCoreApplication::sendEvent(&content, &event);
    }

    void pointerLeaves()
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&content, &event);
    }

    /// Longer than a window waits for the pointer to come back.
    static constexpr std::chrono::milliseconds longEnough{300};

    ManualClock clock;
    std::optional<QRect> icon = QRect(400, 1, 22, 22);
    FocusLoss focusLoss = FocusLoss::deliberate;
    Content content;
    QWidget other;
    std::unique_ptr<MenuBarWindow> window = std::make_unique<MenuBarWindow>(
        content,
        [this] { return icon; },
        clock.function(),
        MenuBarWindow::Options{
            .focusLoss = [this] { return focusLoss; },
            .pointerReturnTimeout = std::chrono::milliseconds(50)});
};

TEST_F(MenuBarWindowTest, IsClosedAtFirst)
{
    EXPECT_FALSE(window->isOpen());
    EXPECT_FALSE(content.isVisible());
}

TEST_F(MenuBarWindowTest, IsATopLevelToolWithoutAFrame)
{
    EXPECT_TRUE(content.isWindow());
    EXPECT_EQ(content.windowType(), Qt::Tool);
    EXPECT_TRUE(content.windowFlags().testFlag(Qt::FramelessWindowHint));
}

TEST_F(MenuBarWindowTest, TakesAContentThatStoodInAnotherWidget)
{
    QWidget parent;
    Content child;
    child.setParent(&parent);
    {
        MenuBarWindow ofChild(
            child, [] { return std::nullopt; }, clock.function());
        ofChild.open();
        EXPECT_TRUE(child.isWindow());
        EXPECT_TRUE(ofChild.isOpen());
        EXPECT_FALSE(parent.isVisible());
    }
    child.setParent(nullptr);
}

TEST_F(MenuBarWindowTest, OpensWithTheFocusAndCloses)
{
    open();
    EXPECT_TRUE(window->isOpen());
    EXPECT_TRUE(content.isVisible());
    EXPECT_EQ(content.size(), QSize(300, 540));
    window->close();
    EXPECT_FALSE(window->isOpen());
    EXPECT_FALSE(content.isVisible());
}

TEST_F(MenuBarWindowTest, OpensUnderTheIcon)
{
    open();
    EXPECT_EQ(content.geometry(), QRect(411 - 150, 23, 300, 540));
}

TEST_F(MenuBarWindowTest, OpensUnderTheIconsPlaceOfTheMoment)
{
    open();
    window->close();
    icon = QRect(300, 1, 22, 22);
    window->open();
    EXPECT_EQ(content.geometry(), QRect(311 - 150, 23, 300, 540));
}

TEST_F(MenuBarWindowTest, OpensAtThePointerWhereTheIconsPlaceIsUnknown)
{
    icon.reset();
    QCursor::setPos(500, 100);
    ASSERT_EQ(QCursor::pos(), QPoint(500, 100));
    open();
    EXPECT_EQ(content.geometry(), QRect(500 - 150, 101, 300, 540));
}

TEST_F(MenuBarWindowTest, OpensInsideTheScreen)
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    icon.reset();
    QCursor::setPos(screen.bottomRight());
    open();
    EXPECT_TRUE(screen.contains(content.geometry()));
}

TEST_F(MenuBarWindowTest, IsAsLowAsItsScreen)
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    content.setFixedSize(300, screen.height() + 200);
    for (int time = 0; time < 2; ++time) {
        window->open();
        EXPECT_EQ(content.size(), QSize(300, screen.height()));
        EXPECT_TRUE(screen.contains(content.geometry()));
        EXPECT_EQ(content.minimumSize(), content.maximumSize());
        window->close();
    }
}

TEST_F(MenuBarWindowTest, HasTheSizeThatItsContentAsksFor)
{
    QWidget plain;
    auto* const column = new QVBoxLayout(&plain);
    column->setContentsMargins(0, 0, 0, 0);
    column->addSpacing(50);
    MenuBarWindow ofPlain(
        plain, [] { return QRect(400, 1, 22, 22); }, clock.function());
    ofPlain.open();
    EXPECT_EQ(plain.height(), 50);
    EXPECT_EQ(plain.geometry().center().x(), 410);
}

TEST_F(MenuBarWindowTest, StaysWhereItIsWhenItIsOpenedAgain)
{
    open();
    icon = QRect(300, 1, 22, 22);
    window->open();
    EXPECT_TRUE(window->isOpen());
    EXPECT_EQ(content.geometry(), QRect(411 - 150, 23, 300, 540));
}

TEST_F(MenuBarWindowTest, TogglesBetweenOpenAndClosed)
{
    window->toggle();
    EXPECT_TRUE(window->isOpen());
    ASSERT_TRUE(awaitFocus());
    window->toggle();
    EXPECT_FALSE(window->isOpen());
    window->toggle();
    EXPECT_TRUE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesWhenItLosesTheFocus)
{
    open();
    focusOtherWindow();
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, StaysOpenWhenTheFocusFollowedThePointer)
{
    focusLoss = FocusLoss::followedPointer;
    open();
    focusOtherWindow();
    runEventLoop(longEnough);
    EXPECT_TRUE(window->isOpen());
    window->toggle();
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesAtAPressElsewhereAfterTheFocusFollowedThePointer)
{
    focusLoss = FocusLoss::followedPointer;
    open();
    window->pointerWasPressed(QPoint(0, 0));
    EXPECT_TRUE(window->isOpen()) << "with the focus";
    focusOtherWindow();
    window->pointerWasPressed(content.geometry().center());
    EXPECT_TRUE(window->isOpen()) << "inside";
    window->pointerWasPressed(icon->center());
    EXPECT_TRUE(window->isOpen()) << "on the icon";
    window->pointerWasPressed(QPoint(0, 0));
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, StaysOpenForAnUnknownReasonUntilThePointerHasBeenInside)
{
    focusLoss = FocusLoss::unknown;
    open();
    focusOtherWindow();
    runEventLoop(longEnough);
    EXPECT_TRUE(window->isOpen());
    pointerEnters();
    content.activateWindow();
    ASSERT_TRUE(awaitFocus());
    runEventLoop(longEnough);
    EXPECT_TRUE(window->isOpen());
    // The compositor tells of the keyboard first.
    focusOtherWindow();
    pointerLeaves();
    EXPECT_TRUE(window->isOpen());
    EXPECT_TRUE(await([this] { return !window->isOpen(); }));
}

TEST_F(MenuBarWindowTest, StaysOpenWhenThePointerComesBackSoon)
{
    focusLoss = FocusLoss::unknown;
    open();
    pointerEnters();
    pointerLeaves();
    focusOtherWindow();
    EXPECT_TRUE(window->isOpen());
    pointerEnters();
    content.activateWindow();
    ASSERT_TRUE(awaitFocus());
    runEventLoop(longEnough);
    EXPECT_TRUE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesWhenTheFocusIsLostLongAfterThePointerLeft)
{
    focusLoss = FocusLoss::unknown;
    open();
    pointerEnters();
    pointerLeaves();
    clock.advance(1s);
    focusOtherWindow();
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesWhenTheFocusIsLostAndThePointerStaysInside)
{
    focusLoss = FocusLoss::unknown;
    open();
    pointerEnters();
    focusOtherWindow();
    EXPECT_TRUE(await([this] { return !window->isOpen(); }));
}

TEST_F(MenuBarWindowTest, ForgetsThePointerWhenItOpensAgain)
{
    focusLoss = FocusLoss::unknown;
    open();
    pointerEnters();
    pointerLeaves();
    clock.advance(1s);
    focusOtherWindow();
    ASSERT_FALSE(window->isOpen());
    open();
    focusOtherWindow();
    runEventLoop(longEnough);
    EXPECT_TRUE(window->isOpen());
}

TEST_F(MenuBarWindowTest, IsNotOpenedByTheClickThatTookItsFocus)
{
    open();
    focusOtherWindow();
    clock.advance(499ms);
    window->toggle();
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, IsOpenedByTheNextClickAfterThat)
{
    open();
    focusOtherWindow();
    clock.advance(500ms);
    window->toggle();
    EXPECT_TRUE(window->isOpen());
}

TEST_F(MenuBarWindowTest, IsOpenedOnRequestRightAfterItLostTheFocus)
{
    open();
    focusOtherWindow();
    open();
    EXPECT_TRUE(window->isOpen());
    window->toggle();
    EXPECT_FALSE(window->isOpen());
    window->toggle();
    EXPECT_TRUE(window->isOpen());
}

TEST_F(MenuBarWindowTest, TakesAnOldLossOfFocusForOld)
{
    open();
    focusOtherWindow();
    clock.advance(500ms);
    open();
    window->close();
    window->toggle();
    EXPECT_TRUE(window->isOpen());
}

TEST_F(MenuBarWindowTest, TakesTheFocusBackFromAWindowThatOpenedWithIt)
{
    other.show();
    window->openOnRequest();
    ASSERT_TRUE(awaitFocus());
    for (int time = 0; time < 3; ++time) {
        other.activateWindow();
        EXPECT_TRUE(await([this] { return content.isActiveWindow(); }));
        EXPECT_TRUE(window->isOpen());
        clock.advance(600ms);
    }
}

TEST_F(MenuBarWindowTest, ClosesForAWindowThatIsOpenedAfterIt)
{
    window->openOnRequest();
    ASSERT_TRUE(awaitFocus());
    focusOtherWindow();
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesForAWindowThatOpenedWithItTwoSecondsLater)
{
    other.show();
    window->openOnRequest();
    ASSERT_TRUE(awaitFocus());
    clock.advance(2s);
    focusOtherWindow();
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesForAnotherProgramAlsoWhenItOpenedAmongOthers)
{
    window->openOnRequest();
    ASSERT_TRUE(awaitFocus());
    // None of the application's widgets, as another program's is.
    QWindow another;
    another.show();
    another.requestActivate();
    ASSERT_TRUE(await([&another] { return another.isActive(); }));
    ASSERT_EQ(QApplication::activeWindow(), nullptr);
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, HoldsTheFocusOnlyForTheOpeningAmongOthers)
{
    window->openOnRequest();
    ASSERT_TRUE(awaitFocus());
    window->close();
    focusOtherWindow();
    open();
    focusOtherWindow();
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesOnEscape)
{
    open();
    QTest::keyClick(&content, Qt::Key_Escape);
    EXPECT_FALSE(window->isOpen());
    window->toggle();
    EXPECT_TRUE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesOnEscapeWhileATextInItHasTheFocus)
{
    open();
    content.field.setFocus();
    QTest::keyClick(&content.field, Qt::Key_A);
    EXPECT_TRUE(window->isOpen());
    EXPECT_EQ(content.field.text(), QStringLiteral("a"));
    QTest::keyClick(&content.field, Qt::Key_Escape);
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, StaysOpenUnderAMenuOfItsOwn)
{
    open();
    QMenu menu(&content);
    menu.addAction(QStringLiteral("Copy"));
    menu.popup(content.geometry().center());
    ASSERT_TRUE(await([&] { return menu.isVisible(); }));
    QCoreApplication::processEvents();
    EXPECT_TRUE(window->isOpen());
    QTest::keyClick(&menu, Qt::Key_Escape);
    EXPECT_FALSE(menu.isVisible());
    QCoreApplication::processEvents();
    EXPECT_TRUE(window->isOpen());
    focusOtherWindow();
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, IsClosedWhenTheHostHasClosedIt)
{
    open();
    content.close();
    EXPECT_FALSE(window->isOpen());
    window->toggle();
    EXPECT_TRUE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesAtItsEnd)
{
    open();
    window.reset();
    EXPECT_FALSE(content.isVisible());
    content.show();
    QTest::keyClick(&content, Qt::Key_Escape);
    EXPECT_TRUE(content.isVisible());
}

} // namespace
} // namespace orlimo
