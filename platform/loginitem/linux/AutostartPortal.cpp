#include "platform/loginitem/linux/AutostartPortal.h"

#include "platform/loginitem/LaunchEvent.h"
#include "platform/process/ToQString.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QStringList>
#include <QUuid>

#include <cerrno>
#include <utility>

namespace orlimo {

namespace {

const QString& portalService()
{
    static const auto name = QStringLiteral("org.freedesktop.portal.Desktop");
    return name;
}

const QString& backgroundInterface()
{
    static const auto name = QStringLiteral("org.freedesktop.portal.Background");
    return name;
}

const QString& requestInterface()
{
    static const auto name = QStringLiteral("org.freedesktop.portal.Request");
    return name;
}

/// The command that the desktop runs inside the sandbox.
QStringList commandLine()
{
    return {QStringLiteral("orlimo"), toQString(launchedAtLoginArgument)};
}

QDBusMessage backgroundRequest(bool autostart, const QString& token)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        portalService(),
        QStringLiteral("/org/freedesktop/portal/desktop"),
        backgroundInterface(),
        QStringLiteral("RequestBackground"));
    const QVariantMap options{
        {QStringLiteral("handle_token"), token},
        {QStringLiteral("reason"),
         QCoreApplication::translate(
             "LoginItemService", "Orlimo copies verification codes as soon as they arrive.")},
        {QStringLiteral("autostart"), autostart},
        {QStringLiteral("commandline"), commandLine()},
        {QStringLiteral("dbus-activatable"), false},
    };
    const QString noWindow;
    message.setArguments({noWindow, options});
    return message;
}

ServiceError failure(int error, const QString& reason)
{
    const QString text = backgroundInterface() + QStringLiteral(": ") + reason;
    return {.code = error, .localizedDescription = text.toStdString()};
}

ServiceError failure(int error)
{
    return failure(error, qt_error_string(error));
}

/// How a request ended, as the portal reports it.
enum ResponseCode : uint {
    done = 0,
    cancelled = 1, ///< by the user, or because the user once forbade it
};

/// The error of a response that does not grant the request.
int errorOf(uint response)
{
    switch (response) {
    case done:
        return EPERM;
    case cancelled:
        return ECANCELED;
    default:
        return EIO;
    }
}

/// Whether autostart is enabled from now on; absent when that was not decided. A user who forbids
/// running in the background cancels requests to disable autostart too, so a refusal alone does not
/// mean that it stays enabled.
std::optional<bool> decision(uint response, bool isAutostartRequested, const QVariant& autostart)
{
    if (response == done) {
        return autostart.toBool();
    }
    if (response == cancelled && (isAutostartRequested || autostart.isValid())) {
        return !isAutostartRequested && autostart.toBool();
    }
    return std::nullopt;
}

} // namespace

AutostartPortal::AutostartPortal(QDBusConnection sessionBus, std::chrono::milliseconds timeout)
    : bus(std::move(sessionBus))
    , callTimeout(timeout)
    , portalWatcher(portalService(), bus, QDBusServiceWatcher::WatchForUnregistration)
{
    connect(
        &portalWatcher,
        &QDBusServiceWatcher::serviceUnregistered,
        this,
        &AutostartPortal::portalDidDisappear);
}

std::optional<ServiceError> AutostartPortal::requestAutostart(bool autostart, Handler completion)
{
    if (!bus.isConnected()) {
        const QString reason = bus.lastError().message();
        return reason.isEmpty() ? failure(ENOTCONN) : failure(ENOTCONN, reason);
    }
    const QString token = QStringLiteral("orlimo_") + QUuid::createUuid().toString(QUuid::Id128);
    openRequest = requestPath(token);
    // Before the request: the response may precede the reply.
    if (!listen(true)) {
        return failure(ENOTCONN);
    }
    handler = std::move(completion);
    isAutostartRequested = autostart;
    isAccepted = false;

    auto* const call = new QDBusPendingCallWatcher(
        bus.asyncCall(backgroundRequest(autostart, token), static_cast<int>(callTimeout.count())),
        this);
    connect(
        call,
        &QDBusPendingCallWatcher::finished,
        this,
        [this, path = openRequest](QDBusPendingCallWatcher* ended) {
            callDidFinish(path, *ended);
            ended->deleteLater();
        });
    return std::nullopt;
}

void AutostartPortal::cancelRequest()
{
    (void)listen(false);
    handler = {};
    // The result is ignored: the portal may have dropped the request long ago.
    (void)bus.send(QDBusMessage::createMethodCall(
        portalService(), openRequest, requestInterface(), QStringLiteral("Close")));
}

QString AutostartPortal::requestPath(const QString& token) const
{
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
}

bool AutostartPortal::listen(bool on)
{
    const auto signal = QStringLiteral("Response");
    const char* const slot = SLOT(didReceiveResponse(uint, QVariantMap, QDBusMessage));
    return on ? bus.connect(portalService(), openRequest, requestInterface(), signal, this, slot)
              : bus.disconnect(
                    portalService(), openRequest, requestInterface(), signal, this, slot);
}

void AutostartPortal::callDidFinish(const QString& path, const QDBusPendingCall& call)
{
    if (!isRequesting() || path != openRequest) {
        return; // finished or closed already
    }
    if (call.isError()) {
        finish({.isAutostartEnabled = {}, .error = failure(EIO, call.error().message())});
        return;
    }
    isAccepted = true;
}

void AutostartPortal::didReceiveResponse(
    uint response, const QVariantMap& results, const QDBusMessage& message)
{
    if (!isRequesting() || message.path() != openRequest) {
        return;
    }
    const auto autostart =
        decision(response, isAutostartRequested, results.value(QStringLiteral("autostart")));
    const bool isAsRequested = autostart == isAutostartRequested;
    finish({
        .isAutostartEnabled = autostart,
        .error = isAsRequested ? std::nullopt : std::optional(failure(errorOf(response))),
    });
}

void AutostartPortal::portalDidDisappear()
{
    // The bus ends a call without a reply, or the next portal replies.
    if (isRequesting() && isAccepted) {
        finish({.isAutostartEnabled = {}, .error = failure(ECONNRESET)});
    }
}

void AutostartPortal::finish(const Result& result)
{
    (void)listen(false);
    // Reset first, because it may send the next request.
    std::exchange(handler, {})(result);
}

} // namespace orlimo
