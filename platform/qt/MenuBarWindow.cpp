#include "platform/qt/MenuBarWindow.h"

#include "platform/qt/WindowPlacement.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QKeySequence>
#include <QScreen>

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
}

MenuBarWindow::~MenuBarWindow()
{
    close();
}

void MenuBarWindow::open()
{
    closedByLosingFocus.reset();
    if (!isOpen()) {
        place();
    }
    manner.willComeToFront(content);
    content.show();
    content.raise();
    content.activateWindow();
}

void MenuBarWindow::openAmongOthers()
{
    open();
    openedAmongOthers = clock();
}

void MenuBarWindow::close()
{
    openedAmongOthers.reset();
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
    // A popup of the window's own, such as a text's menu, does not deactivate it.
    if (watched == &content && event->type() == QEvent::WindowDeactivate) {
        didLoseFocus();
    }
    return QObject::eventFilter(watched, event);
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
    } else {
        close();
        closedByLosingFocus = clock();
    }
}

bool MenuBarWindow::othersAreStillBeingOpened() const
{
    const bool anotherHasTheFocus = QApplication::activeWindow() != nullptr;
    return anotherHasTheFocus && openedAmongOthers && clock() - *openedAmongOthers < openingTime;
}

bool MenuBarWindow::hasJustLostFocus() const
{
    return closedByLosingFocus && clock() - *closedByLosingFocus < sameClick;
}

} // namespace orlimo
