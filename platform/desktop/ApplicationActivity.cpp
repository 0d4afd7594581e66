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
constexpr std::chrono::milliseconds handOverTime{400};

bool losesItsSurface(const QEvent& event)
{
    return event.type() == QEvent::PlatformSurface &&
           static_cast<const QPlatformSurfaceEvent&>(event).surfaceEventType() ==
               QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed;
}

} // namespace

ApplicationActivity::ApplicationActivity(std::function<void(bool isActive)> whoIsTold)
    : didChange(std::move(whoIsTold))
{
    handOver.setSingleShot(true);
    handOver.setInterval(handOverTime);
    QObject::connect(&handOver, &QTimer::timeout, this, &ApplicationActivity::tell);
    QObject::connect(
        qGuiApp, &QGuiApplication::applicationStateChanged, this, &ApplicationActivity::tell);
    QObject::connect(
        qGuiApp, &QGuiApplication::focusWindowChanged, this, &ApplicationActivity::tell);
    qGuiApp->installEventFilter(this);
    tell();
}

bool ApplicationActivity::eventFilter(QObject* watched, QEvent* event)
{
    // A window that is closed while it has the focus goes without the toolkit's telling anybody
    // that the application is active no more.
    if (losesItsSurface(*event) && watched == QGuiApplication::focusWindow()) {
        handOver.start();
    }
    return QObject::eventFilter(watched, event);
}

void ApplicationActivity::tell()
{
    didChange(
        QGuiApplication::applicationState() == Qt::ApplicationActive &&
        QGuiApplication::focusWindow() != nullptr);
}

} // namespace orlimo
