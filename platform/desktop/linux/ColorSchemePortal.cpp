#include "platform/desktop/linux/ColorSchemePortal.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QStringList>

#include <limits>
#include <utility>

namespace orlimo {

namespace {

/// No timer, which would wake an idle program: the bus replies for a portal that exits.
constexpr int noTimeout = std::numeric_limits<int>::max();

QString portalService()
{
    return QStringLiteral("org.freedesktop.portal.Desktop");
}

QString portalPath()
{
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

QString settingsInterface()
{
    return QStringLiteral("org.freedesktop.portal.Settings");
}

QString appearanceGroup()
{
    return QStringLiteral("org.freedesktop.appearance");
}

QString colorSchemeKey()
{
    return QStringLiteral("color-scheme");
}

/// `Read` and not the newer `ReadOne`: portals of every version have it.
QDBusMessage readCall()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        portalService(), portalPath(), settingsInterface(), QStringLiteral("Read"));
    call.setArguments({appearanceGroup(), colorSchemeKey()});
    return call;
}

QDBusMessage ownerQuery()
{
    const QString busName = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage call = QDBusMessage::createMethodCall(
        busName, QStringLiteral("/org/freedesktop/DBus"), busName, QStringLiteral("GetNameOwner"));
    call.setArguments({portalService()});
    return call;
}

/// What is in a variant, however many times it is wrapped: `Read` wraps its result twice.
QVariant unwrapped(QVariant value)
{
    while (value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

ColorSchemePortal::ColorSchemePortal(QDBusConnection sessionBus, Handler handler)
    : onPreference(std::move(handler))
    , bus(std::move(sessionBus))
    , portalWatcher(portalService(), bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    if (!bus.isConnected()) {
        return;
    }
    connect(
        &portalWatcher,
        &QDBusServiceWatcher::serviceOwnerChanged,
        this,
        [this](const QString&, const QString&, const QString& owner) {
            portalOwner = owner;
            if (!owner.isEmpty()) {
                read();
            }
        });
    // From any sender, checked on arrival: to connect to a named one, Qt would block until the bus
    // says who owns the name.
    bus.connect(
        QString(),
        portalPath(),
        settingsInterface(),
        QStringLiteral("SettingChanged"),
        QStringList{appearanceGroup(), colorSchemeKey()},
        QStringLiteral("ssv"),
        this,
        SLOT(settingDidChange(QDBusMessage)));
    auto* const query = new QDBusPendingCallWatcher(bus.asyncCall(ownerQuery(), noTimeout), this);
    connect(query, &QDBusPendingCallWatcher::finished, this, [this, query] {
        query->deleteLater();
        const QDBusPendingReply<QString> owner = *query;
        // A change of the owner that was reported in between is newer.
        if (!portalOwner && owner.isValid()) {
            portalOwner = owner.value();
        }
    });
    read();
}

void ColorSchemePortal::read()
{
    const int number = ++readCount;
    auto* const call = new QDBusPendingCallWatcher(bus.asyncCall(readCall(), noTimeout), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, number] {
        call->deleteLater();
        const QDBusMessage reply = call->reply();
        if (number == readCount && reply.type() == QDBusMessage::ReplyMessage) {
            report(reply.arguments().value(0));
        }
    });
}

void ColorSchemePortal::settingDidChange(const QDBusMessage& message)
{
    if (message.service() == portalOwner) {
        report(message.arguments().value(2));
    }
}

void ColorSchemePortal::report(const QVariant& value)
{
    const QVariant number = unwrapped(value);
    if (number.userType() != QMetaType::UInt) {
        return;
    }
    const auto scheme = ColorScheme(number.toUInt());
    const bool isKnown = scheme == ColorScheme::dark || scheme == ColorScheme::light;
    onPreference(isKnown ? scheme : ColorScheme::noPreference);
}

} // namespace orlimo
