#pragma once

#include <QPoint>

class QWidget;

/// The mouse, as the window system reports it to a window that is shown: whatever the pointer
/// crosses is entered and left.
namespace orlimo::pointer {

/// Moves it to `position` in `widget`.
void moveTo(QWidget& widget, QPoint position);
/// Moves it out of `window`.
void leave(QWidget& window);

void press(QWidget& widget, QPoint position);
void release(QWidget& widget, QPoint position);
void click(QWidget& widget, QPoint position);
void doubleClick(QWidget& widget, QPoint position);

/// Clicks in the middle of the widget.
void click(QWidget& widget);

} // namespace orlimo::pointer
