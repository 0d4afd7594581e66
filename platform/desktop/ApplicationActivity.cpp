#include "platform/desktop/ApplicationActivity.h"

#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QWindow>

#include <chrono>
#include <utility>

namespace orlimo {

namespace {

/// How long the host may take to hand the focus from one window to the next, in between of which
/// the application counts as active. As long as the toolkit itself waits.
constexpr std::chrono::milliseconds handoverDelay{400};

bool isSurfaceDestruction(const QEvent& event)
{
    return event.type() == QEvent::PlatformSurface &&
           static_cast<const QPlatformSurfaceEvent&>(event).surfaceEventType() ==
               QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed;
}

} // namespace

ApplicationActivity::ApplicationActivity(std::function<void(bool isActive)> changeHandler)
    : didChange(std::move(changeHandler))
{
    handoverTimer.setSingleShot(true);
    handoverTimer.setInterval(handoverDelay);
    QObject::connect(&handoverTimer, &QTimer::timeout, this, &ApplicationActivity::notify);
    QObject::connect(
        qGuiApp, &QGuiApplication::applicationStateChanged, this, &ApplicationActivity::notify);
    QObject::connect(
        qGuiApp, &QGuiApplication::focusWindowChanged, this, &ApplicationActivity::notify);
    qGuiApp->installEventFilter(this);
    notify();
}

bool ApplicationActivity::eventFilter(QObject* watched, QEvent* event)
{
    // A window that is closed while it has the focus goes without the toolkit's telling anybody
    // that the application is active no more.
    if (isSurfaceDestruction(*event) && watched == QGuiApplication::focusWindow()) {
        handoverTimer.start();
    }
    return QObject::eventFilter(watched, event);
}

void ApplicationActivity::notify()
{
    didChange(
        QGuiApplication::applicationState() == Qt::ApplicationActive &&
        QGuiApplication::focusWindow() != nullptr);
}

} // namespace orlimo
