#include "platform/menubar/MenuBarWindow.h"

#include "platform/menubar/WindowPlacement.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QKeySequence>
#include <QScreen>

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace orlimo {

namespace {

/// How much later than the loss of focus the click that caused it may be told. A click that a
/// person makes on purpose after it comes later still.
constexpr std::chrono::milliseconds sameClick{500};

/// How long after they were opened the program's windows may still be given the focus for it.
constexpr std::chrono::seconds openingTime{2};

/// How far apart the loss of the focus and the leaving of the pointer may be reported that belong
/// together.
constexpr std::chrono::milliseconds sameMove{150};

/// Where programs may not place their windows, the compositor does.
bool compositorPlacesWindows()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

std::vector<ScreenArea> screenAreas()
{
    std::vector<ScreenArea> areas;
    for (const QScreen* const screen : QGuiApplication::screens()) {
        areas.push_back({screen->geometry(), screen->availableGeometry()});
    }
    return areas;
}

} // namespace

MenuBarWindow::MenuBarWindow(QWidget& window, IconGeometry geometry, UptimeClock uptimeClock)
    : MenuBarWindow(window, std::move(geometry), std::move(uptimeClock), Manner())
{}

MenuBarWindow::MenuBarWindow(
    QWidget& window, IconGeometry geometry, UptimeClock uptimeClock, Manner hostsManner)
    : content(window)
    , iconGeometry(std::move(geometry))
    , clock(std::move(uptimeClock))
    , manner(std::move(hostsManner))
    , escape(QKeySequence(Qt::Key_Escape), &window)
{
    content.setWindowFlags(manner.flags);
    content.installEventFilter(this);
    QObject::connect(&escape, &QShortcut::activated, this, &MenuBarWindow::close);
    closing.setSingleShot(true);
    QObject::connect(&closing, &QTimer::timeout, this, &MenuBarWindow::closeForLossOfFocus);
}

MenuBarWindow::~MenuBarWindow()
{
    close();
}

void MenuBarWindow::open()
{
    closedByLosingFocus.reset();
    if (!isOpen()) {
        forgetPointer();
        place();
    }
    manner.willComeToFront(content);
    content.show();
    content.raise();
    content.activateWindow();
}

void MenuBarWindow::openAmongOthers()
{
    openedWith.clear();
    for (QWidget* const other : QApplication::topLevelWidgets()) {
        if (other != &content && other->isVisible()) {
            openedWith.emplace_back(other);
        }
    }
    open();
    openedAmongOthers = clock();
}

void MenuBarWindow::close()
{
    openedAmongOthers.reset();
    closing.stop();
    content.hide();
}

bool MenuBarWindow::isOpen() const
{
    // Not isVisible(): that still holds while a window that is being hidden loses the focus.
    return !content.isHidden();
}

void MenuBarWindow::toggle()
{
    if (isOpen()) {
        close();
    } else if (!hasJustLostFocus()) {
        open();
    }
}

bool MenuBarWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &content) {
        switch (event->type()) {
        case QEvent::WindowDeactivate:
            // A popup of the window's own, such as a text's menu, does not deactivate it.
            didLoseFocus();
            break;
        case QEvent::WindowActivate:
            hasLostFocusForUnknownReason = false;
            closing.stop();
            break;
        case QEvent::Enter:
            pointerDidEnter();
            break;
        case QEvent::Leave:
            pointerDidLeave();
            break;
        default:
            break;
        }
    }
    return QObject::eventFilter(watched, event);
}

void MenuBarWindow::pointerWasPressed(const QPoint& place)
{
    const bool isElsewhere = !content.frameGeometry().contains(place) &&
                             !iconGeometry().value_or(QRect()).contains(place);
    if (isOpen() && isElsewhere && !content.isActiveWindow() &&
        QApplication::activePopupWidget() == nullptr)
    {
        closeForLossOfFocus();
    }
}

void MenuBarWindow::place()
{
    const auto screens = screenAreas();
    if (screens.empty()) {
        return;
    }
    if (compositorPlacesWindows()) {
        fit(content.screen()->availableGeometry().size());
        return;
    }
    const QRect anchor = iconGeometry().value_or(QRect(QCursor::pos(), QSize(1, 1)));
    fit(availableArea(anchor, screens).size());
    content.move(windowPlacement(anchor, content.size(), screens));
}

void MenuBarWindow::fit(QSize available)
{
    if (!content.testAttribute(Qt::WA_Resized)) {
        content.adjustSize();
    }
    if (!wholeSize) {
        wholeSize = content.size();
    }
    const QSize size = wholeSize->boundedTo(available);
    if (size != content.size()) {
        // Fixed, so that compositors that tile windows leave it alone.
        content.setFixedSize(size);
    }
}

void MenuBarWindow::didLoseFocus()
{
    if (!isOpen()) {
        return;
    }
    if (othersAreStillBeingOpened()) {
        content.activateWindow();
        return;
    }
    switch (manner.focusLoss()) {
    case FocusLoss::deliberate:
        closeForLossOfFocus();
        break;
    case FocusLoss::followedPointer:
        break;
    case FocusLoss::unknown:
        didLoseFocusForUnknownReason();
        break;
    }
}

void MenuBarWindow::didLoseFocusForUnknownReason()
{
    hasLostFocusForUnknownReason = true;
    if (isPointerInside) {
        // Either it is just leaving, which is reported next, or it stays and was not the reason.
        closing.start(sameMove);
    } else if (pointerLeft && clock() - *pointerLeft < sameMove) {
        closing.start(manner.timeToReturn);
    } else if (hasPointerBeenInside) {
        closeForLossOfFocus();
    }
}

void MenuBarWindow::pointerDidEnter()
{
    isPointerInside = true;
    hasPointerBeenInside = true;
    closing.stop();
}

void MenuBarWindow::pointerDidLeave()
{
    isPointerInside = false;
    pointerLeft = clock();
    if (isOpen() && hasLostFocusForUnknownReason) {
        closing.start(manner.timeToReturn);
    }
}

void MenuBarWindow::closeForLossOfFocus()
{
    close();
    closedByLosingFocus = clock();
}

void MenuBarWindow::forgetPointer()
{
    hasLostFocusForUnknownReason = false;
    isPointerInside = false;
    hasPointerBeenInside = false;
    pointerLeft.reset();
}

bool MenuBarWindow::othersAreStillBeingOpened() const
{
    const QWidget* const active = QApplication::activeWindow();
    const bool openedWithIt =
        active != nullptr &&
        std::find(openedWith.begin(), openedWith.end(), active) != openedWith.end();
    return openedWithIt && openedAmongOthers && clock() - *openedAmongOthers < openingTime;
}

bool MenuBarWindow::hasJustLostFocus() const
{
    return closedByLosingFocus && clock() - *closedByLosingFocus < sameClick;
}

} // namespace orlimo
