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

/// How long after a loss of focus the click that caused it may be reported. A deliberate further
/// click comes later still.
constexpr std::chrono::milliseconds sameClickInterval{500};

/// How long after they were opened the program's other windows may still receive the focus.
constexpr std::chrono::seconds openingGracePeriod{2};

/// How far apart the same movement's loss of focus and leaving of the pointer may be reported.
constexpr std::chrono::milliseconds sameMoveInterval{150};

/// Whether the compositor places windows, instead of the program.
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
    : MenuBarWindow(window, std::move(geometry), std::move(uptimeClock), Options())
{}

MenuBarWindow::MenuBarWindow(
    QWidget& window, IconGeometry geometry, UptimeClock uptimeClock, Options windowOptions)
    : content(window)
    , iconGeometry(std::move(geometry))
    , clock(std::move(uptimeClock))
    , options(std::move(windowOptions))
    , escape(QKeySequence(Qt::Key_Escape), &window)
{
    content.setWindowFlags(options.flags);
    content.installEventFilter(this);
    QObject::connect(&escape, &QShortcut::activated, this, &MenuBarWindow::close);
    closeTimer.setSingleShot(true);
    QObject::connect(&closeTimer, &QTimer::timeout, this, &MenuBarWindow::closeOnFocusLoss);
}

MenuBarWindow::~MenuBarWindow()
{
    close();
}

void MenuBarWindow::open()
{
    closedOnFocusLossAt.reset();
    if (!isOpen()) {
        resetPointerState();
        moveToIcon();
    }
    options.willComeToFront(content);
    content.show();
    content.raise();
    content.activateWindow();
}

void MenuBarWindow::openOnRequest()
{
    earlierWindows.clear();
    for (QWidget* const other : QApplication::topLevelWidgets()) {
        if (other != &content && other->isVisible()) {
            earlierWindows.emplace_back(other);
        }
    }
    open();
    openedOnRequestAt = clock();
}

void MenuBarWindow::close()
{
    openedOnRequestAt.reset();
    closeTimer.stop();
    content.hide();
}

bool MenuBarWindow::isOpen() const
{
    // Not isVisible(), which is still true while a window being hidden loses the focus.
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
            // A popup of the window itself, such as a text field's menu, does not deactivate it.
            didLoseFocus();
            break;
        case QEvent::WindowActivate:
            hasLostFocusForUnknownReason = false;
            closeTimer.stop();
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

void MenuBarWindow::pointerWasPressed(const QPoint& position)
{
    const bool isElsewhere = !content.frameGeometry().contains(position) &&
                             !iconGeometry().value_or(QRect()).contains(position);
    if (isOpen() && isElsewhere && !content.isActiveWindow() &&
        QApplication::activePopupWidget() == nullptr)
    {
        closeOnFocusLoss();
    }
}

void MenuBarWindow::moveToIcon()
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
    if (!fullSize) {
        fullSize = content.size();
    }
    const QSize size = fullSize->boundedTo(available);
    if (size != content.size()) {
        // A fixed size keeps tiling compositors from resizing it.
        content.setFixedSize(size);
    }
}

void MenuBarWindow::didLoseFocus()
{
    if (!isOpen()) {
        return;
    }
    if (hasEarlierWindowTakenFocus()) {
        content.activateWindow();
        return;
    }
    switch (options.focusLoss()) {
    case FocusLoss::deliberate:
        closeOnFocusLoss();
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
        // Either it is just leaving, which is reported next, or it was not the reason.
        closeTimer.start(sameMoveInterval);
    } else if (pointerLeftAt && clock() - *pointerLeftAt < sameMoveInterval) {
        closeTimer.start(options.pointerReturnTimeout);
    } else if (hasPointerBeenInside) {
        closeOnFocusLoss();
    }
}

void MenuBarWindow::pointerDidEnter()
{
    isPointerInside = true;
    hasPointerBeenInside = true;
    closeTimer.stop();
}

void MenuBarWindow::pointerDidLeave()
{
    isPointerInside = false;
    pointerLeftAt = clock();
    if (isOpen() && hasLostFocusForUnknownReason) {
        closeTimer.start(options.pointerReturnTimeout);
    }
}

void MenuBarWindow::closeOnFocusLoss()
{
    close();
    closedOnFocusLossAt = clock();
}

void MenuBarWindow::resetPointerState()
{
    hasLostFocusForUnknownReason = false;
    isPointerInside = false;
    hasPointerBeenInside = false;
    pointerLeftAt.reset();
}

bool MenuBarWindow::hasEarlierWindowTakenFocus() const
{
    const QWidget* const active = QApplication::activeWindow();
    const bool isEarlierWindow =
        active != nullptr &&
        std::find(earlierWindows.begin(), earlierWindows.end(), active) != earlierWindows.end();
    return isEarlierWindow && openedOnRequestAt &&
           clock() - *openedOnRequestAt < openingGracePeriod;
}

bool MenuBarWindow::hasJustLostFocus() const
{
    return closedOnFocusLossAt && clock() - *closedOnFocusLossAt < sameClickInterval;
}

} // namespace orlimo
