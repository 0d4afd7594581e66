#include "platform/instance/linux/ApplicationInterface.h"

#include "platform/threads/MainThread.h"

#include <QCoreApplication>
#include <QDBusError>

#include <utility>

namespace orlimo {

namespace {

using Kind = ApplicationRequest::Kind;

/// Desktops older than activation tokens pass the same as a startup id.
QByteArray tokenIn(const QVariantMap& platformData)
{
    for (const char* name : {"activation-token", "desktop-startup-id"}) {
        QByteArray token = platformData.value(QLatin1String(name)).toString().toUtf8();
        if (!token.isEmpty()) {
            return token;
        }
    }
    return {};
}

} // namespace

ApplicationInterface::ApplicationInterface()
{
    flushTimer.setSingleShot(true);
    QObject::connect(
        &flushTimer, &QTimer::timeout, this, &ApplicationInterface::flushPendingRequests);
}

void ApplicationInterface::setRequestHandler(RequestHandler newHandler)
{
    requireMainThread();
    // Requests that have reached the connection are still among the posted events.
    QCoreApplication::sendPostedEvents(this);
    handleRequest = std::move(newHandler);
    flushPendingRequests();
}

void ApplicationInterface::Activate(const QVariantMap& platformData)
{
    enqueue({Kind::open, tokenIn(platformData)});
}

void ApplicationInterface::Open(const QStringList& /*addresses*/, const QVariantMap& platformData)
{
    Activate(platformData);
}

void ApplicationInterface::ActivateAction(
    const QString& action, const QVariantList& /*parameters*/, const QVariantMap& platformData)
{
    if (action == QLatin1String("open")) {
        Activate(platformData);
    } else if (action == QLatin1String("quit")) {
        enqueue({Kind::quit, {}});
    } else {
        sendErrorReply(
            QDBusError::InvalidArgs, QStringLiteral("there is no action \"%1\"").arg(action));
    }
}

void ApplicationInterface::enqueue(const ApplicationRequest& request)
{
    requireMainThread();
    // Two requests to open are one, and a program that quits opens nothing.
    if (!pendingRequest || pendingRequest->kind != Kind::quit) {
        pendingRequest = request;
    }
    // Not within the call: the caller waits for the reply, and opening is slow.
    flushTimer.start(0);
}

void ApplicationInterface::flushPendingRequests()
{
    if (!handleRequest || !pendingRequest) {
        return;
    }
    const ApplicationRequest request = *std::exchange(pendingRequest, std::nullopt);
    handleRequest(request);
}

} // namespace orlimo
