#include "tests/support/widgets/Pointer.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace orlimo::pointer {

namespace {

/// The point as its window counts.
QPoint inWindow(const QWidget& widget, QPoint position)
{
    return widget.mapTo(widget.window(), position);
}

QWindow* windowOf(const QWidget& widget)
{
    return widget.window()->windowHandle();
}

} // namespace

void moveTo(QWidget& widget, QPoint position)
{
    QTest::mouseMove(windowOf(widget), inWindow(widget, position));
    QCoreApplication::processEvents();
}

void leave(QWidget& window)
{
    QEvent left(QEvent::Leave);
    QCoreApplication::sendEvent(windowOf(window), &left);
    QCoreApplication::processEvents();
}

void press(QWidget& widget, QPoint position)
{
    QTest::mousePress(windowOf(widget), Qt::LeftButton, {}, inWindow(widget, position));
    QCoreApplication::processEvents();
}

void release(QWidget& widget, QPoint position)
{
    QTest::mouseRelease(windowOf(widget), Qt::LeftButton, {}, inWindow(widget, position));
    QCoreApplication::processEvents();
}

void click(QWidget& widget, QPoint position)
{
    press(widget, position);
    release(widget, position);
}

void doubleClick(QWidget& widget, QPoint position)
{
    QTest::mouseDClick(windowOf(widget), Qt::LeftButton, {}, inWindow(widget, position));
    QCoreApplication::processEvents();
}

void click(QWidget& widget)
{
    click(widget, widget.rect().center());
}

} // namespace orlimo::pointer
