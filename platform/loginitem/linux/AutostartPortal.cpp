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

/// What the portal has the desktop run, inside the sandbox.
QStringList commandLine()
{
    return {QStringLiteral("orlimo"), toQString(launchedAtLoginArgument)};
}

QDBusMessage question(bool autostart, const QString& token)
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

ServiceError failure(int error, const QString& words)
{
    const QString text = backgroundInterface() + QStringLiteral(": ") + words;
    return {.code = error, .localizedDescription = text.toStdString()};
}

ServiceError failure(int error)
{
    return failure(error, qt_error_string(error));
}

/// How the portal says that a question has come to its end.
enum Response : uint {
    done = 0,
    cancelled = 1, ///< by the user, or because the user once forbade it
};

/// The error that a response stands for where it does not bring what was asked for.
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

/// What has been decided. Who forbids the program to run in the background is heard also when it
/// only asks not to be started any more, so a refusal alone does not say that the start remains.
std::optional<bool> decision(uint response, bool wantsAutostart, const QVariant& autostart)
{
    if (response == done) {
        return autostart.toBool();
    }
    if (response == cancelled && (wantsAutostart || autostart.isValid())) {
        return !wantsAutostart && autostart.toBool();
    }
    return std::nullopt;
}

} // namespace

AutostartPortal::AutostartPortal(QDBusConnection sessionBus, std::chrono::milliseconds longestCall)
    : bus(std::move(sessionBus))
    , callLimit(longestCall)
    , portalWatcher(portalService(), bus, QDBusServiceWatcher::WatchForUnregistration)
{
    connect(
        &portalWatcher,
        &QDBusServiceWatcher::serviceUnregistered,
        this,
        &AutostartPortal::portalWent);
}

std::optional<ServiceError> AutostartPortal::ask(bool autostart, Handler whenAnswered)
{
    if (!bus.isConnected()) {
        const QString words = bus.lastError().message();
        return words.isEmpty() ? failure(ENOTCONN) : failure(ENOTCONN, words);
    }
    const QString token = QStringLiteral("orlimo_") + QUuid::createUuid().toString(QUuid::Id128);
    openRequest = requestPath(token);
    // Before the question: the portal may answer faster than it accepts.
    if (!listen(true)) {
        return failure(ENOTCONN);
    }
    handler = std::move(whenAnswered);
    wantsAutostart = autostart;
    isAccepted = false;

    auto* const call = new QDBusPendingCallWatcher(
        bus.asyncCall(question(autostart, token), static_cast<int>(callLimit.count())), this);
    connect(
        call,
        &QDBusPendingCallWatcher::finished,
        this,
        [this, path = openRequest](QDBusPendingCallWatcher* ended) {
            callEnded(path, *ended);
            ended->deleteLater();
        });
    return std::nullopt;
}

void AutostartPortal::takeBack()
{
    (void)listen(false);
    handler = {};
    // What becomes of it changes nothing: the portal may have forgotten the question long ago.
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
    const char* const slot = SLOT(responseCame(uint, QVariantMap, QDBusMessage));
    return on ? bus.connect(portalService(), openRequest, requestInterface(), signal, this, slot)
              : bus.disconnect(
                    portalService(), openRequest, requestInterface(), signal, this, slot);
}

void AutostartPortal::callEnded(const QString& path, const QDBusPendingCall& call)
{
    if (!isAsking() || path != openRequest) {
        return; // answered or taken back already
    }
    if (call.isError()) {
        finish({.isAutostarted = {}, .error = failure(EIO, call.error().message())});
        return;
    }
    isAccepted = true;
}

void AutostartPortal::responseCame(
    uint response, const QVariantMap& results, const QDBusMessage& message)
{
    if (!isAsking() || message.path() != openRequest) {
        return;
    }
    const auto autostart =
        decision(response, wantsAutostart, results.value(QStringLiteral("autostart")));
    const bool isAsAsked = autostart == wantsAutostart;
    finish({
        .isAutostarted = autostart,
        .error = isAsAsked ? std::nullopt : std::optional(failure(errorOf(response))),
    });
}

void AutostartPortal::portalWent()
{
    // A question not yet accepted is the bus's to end, or the next portal's to answer.
    if (isAsking() && isAccepted) {
        finish({.isAutostarted = {}, .error = failure(ECONNRESET)});
    }
}

void AutostartPortal::finish(const Answer& answer)
{
    (void)listen(false);
    // Taken out first, for it may ask the next question.
    std::exchange(handler, {})(answer);
}

} // namespace orlimo
