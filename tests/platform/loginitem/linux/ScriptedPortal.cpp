#include "tests/platform/loginitem/linux/ScriptedPortal.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <gtest/gtest.h>

namespace orlimo {

namespace {

const auto connectionName = QStringLiteral("portal");
const auto portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const auto colorSchemeKey = QStringLiteral("color-scheme");

} // namespace

ScriptedPortal::ScriptedPortal(const std::string& address)
    : bus(QDBusConnection::connectToBus(QString::fromStdString(address), connectionName))
{
    EXPECT_TRUE(bus.registerVirtualObject(portalPath, this, QDBusConnection::SubPath));
    EXPECT_TRUE(bus.registerService(portalName));
}

ScriptedPortal::~ScriptedPortal()
{
    // Returns when what was sent before has left.
    (void)bus.unregisterService(portalName);
    QDBusConnection::disconnectFromBus(connectionName);
}

void ScriptedPortal::accept(const Request& request)
{
    bus.send(request.call.createReply(QVariant::fromValue(QDBusObjectPath(request.path))));
}

void ScriptedPortal::refuse(const Request& request, const QString& words)
{
    bus.send(request.call.createErrorReply(QDBusError::AccessDenied, words));
}

void ScriptedPortal::respond(const Request& request, uint response, const QVariantMap& results)
{
    QDBusMessage signal = QDBusMessage::createSignal(
        request.path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
    signal.setArguments({response, results});
    bus.send(signal);
}

void ScriptedPortal::changeColorScheme(const QVariant& value)
{
    colorScheme = value;
    sendSettingChanged(appearanceGroup, colorSchemeKey, value);
}

void ScriptedPortal::sendSettingChanged(
    const QString& group, const QString& key, const QVariant& value)
{
    QDBusMessage signal =
        QDBusMessage::createSignal(portalPath, settingsInterface, QStringLiteral("SettingChanged"));
    signal.setArguments({group, key, QVariant::fromValue(QDBusVariant(value))});
    bus.send(signal);
}

void ScriptedPortal::replyToReads()
{
    holdsReads = false;
    for (const QDBusMessage& read : std::exchange(heldReads, {})) {
        replyToRead(read);
    }
}

bool ScriptedPortal::handleRead(const QDBusMessage& message)
{
    if (message.member() != QStringLiteral("Read") ||
        message.arguments() != QVariantList{appearanceGroup, colorSchemeKey})
    {
        return false;
    }
    ++readCount;
    message.setDelayedReply(true);
    if (holdsReads) {
        heldReads.push_back(message);
    } else {
        replyToRead(message);
    }
    return true;
}

void ScriptedPortal::replyToRead(const QDBusMessage& message)
{
    if (!colorScheme.isValid()) {
        bus.send(message.createErrorReply(
            QStringLiteral("org.freedesktop.portal.Error.NotFound"),
            QStringLiteral("Requested setting not found")));
        return;
    }
    // Twice, as the portals do it.
    const QDBusVariant inner(colorScheme);
    bus.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
}

bool ScriptedPortal::handleMessage(
    const QDBusMessage& message, const QDBusConnection& /*connection*/)
{
    if (message.interface() == QStringLiteral("org.freedesktop.portal.Request") &&
        message.member() == QStringLiteral("Close") && message.signature().isEmpty())
    {
        closed.push_back(message.path());
        return true;
    }
    if (message.interface() == settingsInterface) {
        return handleRead(message);
    }
    if (message.interface() != QStringLiteral("org.freedesktop.portal.Background") ||
        message.member() != QStringLiteral("RequestBackground") ||
        message.signature() != QStringLiteral("sa{sv}"))
    {
        return false;
    }
    const auto options = qdbus_cast<QVariantMap>(message.arguments().at(1));
    const QString token = options.value(QStringLiteral("handle_token")).toString();
    const QString sender = message.service().mid(1).replace(u'.', u'_');
    received.push_back({
        .call = message,
        .window = message.arguments().at(0).toString(),
        .options = options,
        .path = QStringLiteral("/org/freedesktop/portal/desktop/request/") + sender +
                QLatin1Char('/') + token,
    });
    message.setDelayedReply(true);
    script(*this, Request(received.back()));
    return true;
}

QString ScriptedPortal::introspect(const QString& /*path*/) const
{
    return {};
}

} // namespace orlimo
