#include "platform/instance/linux/ApplicationInterface.h"

#include "platform/threads/MainThread.h"

#include <QCoreApplication>
#include <QDBusError>

#include <utility>

namespace orlimo {

namespace {

using Kind = ApplicationRequest::Kind;

/// Desktops from before there were activation tokens give the same under the name of the start's
/// id.
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
    nextTurn.setSingleShot(true);
    QObject::connect(&nextTurn, &QTimer::timeout, this, &ApplicationInterface::doKept);
}

void ApplicationInterface::serve(Work doIt)
{
    requireMainThread();
    // What has reached the connection waits among the events and was asked before, too.
    QCoreApplication::sendPostedEvents(this);
    work = std::move(doIt);
    doKept();
}

void ApplicationInterface::Activate(const QVariantMap& platformData)
{
    keep({Kind::open, tokenIn(platformData)});
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
        keep({Kind::quit, {}});
    } else {
        sendErrorReply(
            QDBusError::InvalidArgs, QStringLiteral("there is no action \"%1\"").arg(action));
    }
}

void ApplicationInterface::keep(const ApplicationRequest& request)
{
    requireMainThread();
    // Opening twice is opening once, and a program that is to quit opens nothing.
    if (!kept || kept->kind != Kind::quit) {
        kept = request;
    }
    // Not within the call: whoever asks waits for the answer, and opening takes its time.
    nextTurn.start(0);
}

void ApplicationInterface::doKept()
{
    if (!work || !kept) {
        return;
    }
    const ApplicationRequest request = *std::exchange(kept, std::nullopt);
    work(request);
}

} // namespace orlimo
