#include "platform/linux/ApplicationInterface.h"

#include "platform/MainThread.h"

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

void ApplicationInterface::serve(Work doIt)
{
    requireMainThread();
    work = std::move(doIt);
    if (const auto request = std::exchange(kept, std::nullopt)) {
        work(*request);
    }
}

void ApplicationInterface::Activate(const QVariantMap& platformData)
{
    doOrKeep({Kind::open, tokenIn(platformData)});
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
        doOrKeep({Kind::quit, {}});
    } else {
        sendErrorReply(
            QDBusError::InvalidArgs, QStringLiteral("there is no action \"%1\"").arg(action));
    }
}

void ApplicationInterface::doOrKeep(const ApplicationRequest& request)
{
    requireMainThread();
    if (work) {
        work(request);
    } else if (!kept || kept->kind != Kind::quit) {
        // Opening twice is opening once, and a program that is to quit opens nothing.
        kept = request;
    }
}

} // namespace orlimo
