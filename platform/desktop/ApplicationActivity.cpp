#include "platform/desktop/ApplicationActivity.h"

#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QWindow>

#include <chrono>
#include <utility>

namespace orlimo {

namespace {

/// How long the system may take to move the focus from one window to the next, during which the
/// application counts as active. The same as Qt's own delay.
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
    // When the focused window is closed, Qt does not report that the application has become
    // inactive.
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
