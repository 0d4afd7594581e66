#pragma once

#include <QEvent>
#include <QObject>
#include <QWidget>

#include <functional>
#include <utility>

namespace orlimo {

/// Calls a function once a visible window has been closed, in the event loop and at most once. The
/// observer and the window may go in either order; nothing is called after the observer has gone.
/// Main thread.
class WindowCloseObserver final : public QObject
{
public:
    WindowCloseObserver(QWidget& window, std::function<void()> closedHandler)
        : didClose(std::move(closedHandler))
    {
        window.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // The system reports a minimized window as hidden, too: that is a spontaneous event.
        if (event->type() == QEvent::Hide && !event->spontaneous()) {
            watched->removeEventFilter(this);
            QMetaObject::invokeMethod(
                this, [this] { didClose(); }, Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> didClose;
};

} // namespace orlimo
