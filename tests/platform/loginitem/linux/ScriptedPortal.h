#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QString>
#include <QVariant>
#include <QVariantMap>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// A fake desktop portal on the test's bus, which handles requests to run in the background as the
/// test scripts them and serves the user's colour scheme. It has its own connection and works in
/// the test's event loop, which must not be blocked by a caller.
class ScriptedPortal final : public QDBusVirtualObject
{
public:
    struct Request
    {
        QDBusMessage call;
        QVariantMap options;
        QString path;
    };
    using Script = std::function<void(ScriptedPortal&, const Request&)>;

    explicit ScriptedPortal(const std::string& address)
        : bus(QDBusConnection::connectToBus(
              QString::fromStdString(address), QStringLiteral("portal")))
    {
        EXPECT_TRUE(bus.registerVirtualObject(portalPath, this, QDBusConnection::SubPath));
        EXPECT_TRUE(bus.registerService(portalName));
    }
    ScriptedPortal(const ScriptedPortal&) = delete;
    ScriptedPortal& operator=(const ScriptedPortal&) = delete;
    ~ScriptedPortal() override
    {
        // Returns when what was sent before has left.
        (void)bus.unregisterService(portalName);
        QDBusConnection::disconnectFromBus(bus.name());
    }

    /// Sets the handling of each request. Initially: accepted, without a response.
    void onRequest(Script newScript) { script = std::move(newScript); }
    [[nodiscard]] const std::vector<Request>& requests() const { return received; }
    /// The paths of the requests that callers have closed, in this order.
    [[nodiscard]] const std::vector<QString>& closedPaths() const { return closed; }

    /// Lets the call return, as the portal does before it asks the user.
    void accept(const Request& request)
    {
        bus.send(request.call.createReply(QVariant::fromValue(QDBusObjectPath(request.path))));
    }
    void refuse(const Request& request, const QString& reason)
    {
        bus.send(request.call.createErrorReply(QDBusError::AccessDenied, reason));
    }
    /// Sends the response to a request, whether its call has returned or not.
    void respond(const Request& request, uint response, const QVariantMap& results)
    {
        sendSignal(
            request.path,
            QStringLiteral("org.freedesktop.portal.Request"),
            QStringLiteral("Response"),
            {response, results});
    }

    /// The value of the colour scheme setting. Initially invalid: the setting does not exist.
    void setColorScheme(const QVariant& value) { colorScheme = value; }
    void changeColorScheme(const QVariant& value)
    {
        colorScheme = value;
        sendSettingChanged(appearanceGroup, colorSchemeKey, value);
    }
    void sendSettingChanged(const QString& group, const QString& key, const QVariant& value)
    {
        sendSignal(
            portalPath,
            settingsInterface,
            QStringLiteral("SettingChanged"),
            {group, key, QVariant::fromValue(QDBusVariant(value))});
    }
    /// Delays the replies to reads until `replyToReads`.
    void holdReads() { holdsReads = true; }
    void replyToReads()
    {
        holdsReads = false;
        for (const QDBusMessage& read : std::exchange(heldReads, {})) {
            replyToRead(read);
        }
    }
    [[nodiscard]] int reads() const { return readCount; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override
    {
        const QString method = message.interface() + u'.' + message.member();
        if (method == QStringLiteral("org.freedesktop.portal.Request.Close") &&
            message.signature().isEmpty())
        {
            closed.push_back(message.path());
            return true;
        }
        if (method == settingsInterface + QStringLiteral(".Read") &&
            message.arguments() == QVariantList{appearanceGroup, colorSchemeKey})
        {
            ++readCount;
            message.setDelayedReply(true);
            if (holdsReads) {
                heldReads.push_back(message);
            } else {
                replyToRead(message);
            }
            return true;
        }
        if (method != QStringLiteral("org.freedesktop.portal.Background.RequestBackground") ||
            message.signature() != QStringLiteral("sa{sv}"))
        {
            return false;
        }
        const auto options = qdbus_cast<QVariantMap>(message.arguments().at(1));
        const QString token = options.value(QStringLiteral("handle_token")).toString();
        const QString sender = message.service().mid(1).replace(u'.', u'_');
        received.push_back({
            .call = message,
            .options = options,
            .path = portalPath + QStringLiteral("/request/") + sender + u'/' + token,
        });
        message.setDelayedReply(true);
        script(*this, Request(received.back()));
        return true;
    }
    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

private:
    void sendSignal(
        const QString& path,
        const QString& interface,
        const QString& name,
        const QVariantList& arguments)
    {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
        signal.setArguments(arguments);
        bus.send(signal);
    }

    void replyToRead(const QDBusMessage& message)
    {
        if (!colorScheme.isValid()) {
            bus.send(message.createErrorReply(
                QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                QStringLiteral("Requested setting not found")));
            return;
        }
        // Twice, as the portals do it.
        const auto inner = QVariant::fromValue(QDBusVariant(colorScheme));
        bus.send(message.createReply(QVariant::fromValue(QDBusVariant(inner))));
    }

    const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
    const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
    const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
    const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
    const QString colorSchemeKey = QStringLiteral("color-scheme");
    QDBusConnection bus;
    Script script = [](ScriptedPortal& portal, const Request& request) { portal.accept(request); };
    std::vector<Request> received;
    std::vector<QString> closed;
    QVariant colorScheme;
    bool holdsReads = false;
    std::vector<QDBusMessage> heldReads;
    int readCount = 0;
};

} // namespace orlimo
