#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QTest>
#include <QWidget>
#include <QWindow>

/// The mouse, as the window system reports it to a window that is shown: whatever the pointer
/// crosses is entered and left.
namespace orlimo::pointer {

/// Moves it to `position` in `widget`.
inline void moveTo(QWidget& widget, QPoint position)
{
    QTest::mouseMove(widget.window()->windowHandle(), widget.mapTo(widget.window(), position));
    QCoreApplication::processEvents();
}

/// Moves it out of `window`.
inline void leave(QWidget& window)
{
    QEvent left(QEvent::Leave);
    QCoreApplication::sendEvent(window.windowHandle(), &left);
    QCoreApplication::processEvents();
}

/// Does what `action` is, such as a press, with the left button at `position` in `widget`.
inline void act(QTest::MouseAction action, QWidget& widget, QPoint position)
{
    QTest::mouseEvent(
        action,
        widget.window()->windowHandle(),
        Qt::LeftButton,
        {},
        widget.mapTo(widget.window(), position));
    QCoreApplication::processEvents();
}

inline void press(QWidget& widget, QPoint position)
{
    act(QTest::MousePress, widget, position);
}

inline void release(QWidget& widget, QPoint position)
{
    act(QTest::MouseRelease, widget, position);
}

inline void click(QWidget& widget, QPoint position)
{
    press(widget, position);
    release(widget, position);
}

/// Clicks in the middle of the widget.
inline void click(QWidget& widget)
{
    click(widget, widget.rect().center());
}

} // namespace orlimo::pointer
