#include "platform/menubar/MenuBarWindow.h"

#include "tests/support/Await.h"
#include "tests/support/ManualClock.h"

#include <QApplication>
#include <QCursor>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

class MenuBarWindowTest : public testing::Test
{
protected:
    MenuBarWindowTest() { content.setFixedSize(300, 540); }

    void open()
    {
        window->open();
        ASSERT_TRUE(awaitFocus());
    }

    void openOnRequest()
    {
        window->openOnRequest();
        ASSERT_TRUE(awaitFocus());
    }

    [[nodiscard]] bool awaitFocus()
    {
        return await([this] { return content.isActiveWindow(); });
    }

    /// Gives the focus to another window, like a click on it.
    static void focus(QWidget& another)
    {
        another.show();
        another.activateWindow();
        ASSERT_TRUE(await([&another] { return another.isActiveWindow(); }));
    }

    /// Longer than the window waits for the pointer to return.
    static constexpr std::chrono::milliseconds longEnough{350};

    ManualClock clock;
    std::optional<QRect> icon = QRect(400, 1, 22, 22);
    FocusLoss focusLoss = FocusLoss::deliberate;
    QWidget content;
    QLineEdit field{&content};
    QWidget other;
    std::unique_ptr<MenuBarWindow> window = std::make_unique<MenuBarWindow>(
        content,
        [this] { return icon; },
        clock.function(),
        MenuBarWindow::Options{
            .focusLoss = [this] { return focusLoss; },
            .pointerReturnTimeout = std::chrono::milliseconds(150)});
};

TEST_F(MenuBarWindowTest, OpensUnderTheIconWithTheFocusAndCloses)
{
    EXPECT_FALSE(window->isOpen());
    EXPECT_EQ(content.windowType(), Qt::Tool);
    EXPECT_TRUE(content.windowFlags().testFlag(Qt::FramelessWindowHint));
    open();
    EXPECT_TRUE(window->isOpen());
    EXPECT_EQ(content.geometry(), QRect(411 - 150, 23, 300, 540));
    icon = QRect(300, 1, 22, 22);
    window->open();
    EXPECT_EQ(content.geometry(), QRect(411 - 150, 23, 300, 540)) << "moved while open";
    window->close();
    EXPECT_FALSE(window->isOpen());
    EXPECT_FALSE(content.isVisible());
    window->open();
    EXPECT_EQ(content.geometry(), QRect(311 - 150, 23, 300, 540));
}

TEST_F(MenuBarWindowTest, OpensAtThePointerIfTheIconsPositionIsUnknown)
{
    icon.reset();
    QCursor::setPos(500, 100);
    ASSERT_EQ(QCursor::pos(), QPoint(500, 100));
    open();
    EXPECT_EQ(content.geometry(), QRect(500 - 150, 101, 300, 540));
    window->close();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QCursor::setPos(screen.bottomRight());
    window->open();
    EXPECT_TRUE(screen.contains(content.geometry()));
}

TEST_F(MenuBarWindowTest, HasTheSizeOfItsContentButFitsALowScreen)
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
    auto* const column = new QVBoxLayout(&other);
    column->setContentsMargins(0, 0, 0, 0);
    column->addSpacing(50);
    MenuBarWindow ofSizeHint(
        other, [] { return QRect(400, 1, 22, 22); }, clock.function());
    ofSizeHint.open();
    EXPECT_EQ(other.height(), 50);
    EXPECT_EQ(other.geometry().center().x(), 410);
}

TEST_F(MenuBarWindowTest, FocusThatFollowedThePointerClosesAtAPressElsewhere)
{
    focusLoss = FocusLoss::followedPointer;
    open();
    window->pointerWasPressed(QPoint(0, 0));
    EXPECT_TRUE(window->isOpen()) << "with the focus";
    focus(other);
    runEventLoop(longEnough);
    EXPECT_TRUE(window->isOpen());
    window->pointerWasPressed(content.geometry().center());
    EXPECT_TRUE(window->isOpen()) << "inside";
    window->pointerWasPressed(icon->center());
    EXPECT_TRUE(window->isOpen()) << "on the icon";
    window->toggle();
    EXPECT_FALSE(window->isOpen());
    open();
    focus(other);
    window->pointerWasPressed(QPoint(0, 0));
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, UnknownFocusLossClosesOnlyWithThePointersLeaving)
{
    focusLoss = FocusLoss::unknown;
    QEnterEvent enter(QPointF(10, 10), QPointF(10, 10), QPointF(10, 10));
    QEvent leave(QEvent::Leave);
    const auto staysOpen = [this] {
        runEventLoop(longEnough);
        return window->isOpen();
    };
    std::map<QString, std::function<void()>> actions{
        {QStringLiteral("lose"), [this] { focus(other); }},
        {QStringLiteral("regain"), [this] { focus(content); }},
        {QStringLiteral("enter"), [&] { QCoreApplication::sendEvent(&content, &enter); }},
        {QStringLiteral("leave"), [&] { QCoreApplication::sendEvent(&content, &leave); }},
        {QStringLiteral("advance"), [this] { clock.advance(1s); }},
        {QStringLiteral("wait"), [&] { EXPECT_TRUE(staysOpen()); }}};
    using Case = std::tuple<const char*, bool, bool>;
    for (const auto& [steps, isOpenAtOnce, isOpenLater] : std::vector<Case>{
             {"lose", true, true},
             // The compositor reports the keyboard first.
             {"lose enter regain wait lose leave", true, false},
             {"enter leave lose", true, false},
             {"enter leave lose enter regain", true, true},
             {"enter leave advance lose", false, false},
             {"enter lose", true, false},
             // Nothing is remembered of earlier openings.
             {"lose", true, true}})
    {
        SCOPED_TRACE(steps);
        open();
        for (const QString& step : QString::fromLatin1(steps).split(u' ')) {
            ASSERT_NO_FATAL_FAILURE(actions.at(step)());
        }
        EXPECT_EQ(window->isOpen(), isOpenAtOnce);
        EXPECT_TRUE(isOpenLater ? staysOpen() : await([this] { return !window->isOpen(); }));
        window->close();
        focus(other);
        clock.advance(1min);
    }
}

TEST_F(MenuBarWindowTest, ClickThatTookTheFocusDoesNotReopenIt)
{
    for (const auto& [delay, isReopened] : {std::pair(499ms, false), std::pair(500ms, true)}) {
        open();
        focus(other);
        ASSERT_FALSE(window->isOpen());
        clock.advance(delay);
        window->toggle();
        EXPECT_EQ(window->isOpen(), isReopened) << delay.count();
        window->close();
    }
    open();
    focus(other);
    open();
    window->toggle();
    EXPECT_FALSE(window->isOpen());
    window->toggle();
    EXPECT_TRUE(window->isOpen()) << "the loss was before the last opening";
}

TEST_F(MenuBarWindowTest, TakesTheFocusBackFromAWindowOpenedWithItForTwoSeconds)
{
    other.show();
    openOnRequest();
    for (int time = 0; time < 3; ++time) {
        other.activateWindow();
        EXPECT_TRUE(awaitFocus());
        EXPECT_TRUE(window->isOpen());
        clock.advance(600ms);
    }
    clock.advance(200ms);
    focus(other);
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesForAnotherProgramAndForALaterWindowAlsoIfOpenedOnRequest)
{
    openOnRequest();
    // Not a widget of the application, like another program's window.
    QWindow another;
    another.show();
    another.requestActivate();
    ASSERT_TRUE(await([&another] { return another.isActive(); }));
    EXPECT_FALSE(window->isOpen());
    openOnRequest();
    focus(other);
    EXPECT_FALSE(window->isOpen());
    // Nor does the request hold the focus in a later opening.
    window->openOnRequest();
    window->close();
    open();
    focus(other);
    EXPECT_FALSE(window->isOpen());
}

TEST_F(MenuBarWindowTest, ClosesOnEscapeAlsoFromATextFieldAndAtItsEnd)
{
    open();
    QTest::keyClick(&content, Qt::Key_Escape);
    EXPECT_FALSE(window->isOpen());
    focus(other);
    open();
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_A);
    EXPECT_EQ(field.text(), QStringLiteral("a"));
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_FALSE(window->isOpen());
    window->open();
    content.close();
    EXPECT_FALSE(window->isOpen()) << "closed by the desktop";
    window->open();
    window.reset();
    EXPECT_FALSE(content.isVisible());
    content.show();
    QTest::keyClick(&content, Qt::Key_Escape);
    EXPECT_TRUE(content.isVisible());
}

} // namespace
} // namespace orlimo
