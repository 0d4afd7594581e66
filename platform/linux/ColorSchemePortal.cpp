#include "platform/linux/ColorSchemePortal.h"

#include <QDBusPendingCallWatcher>
#include <QStringList>

#include <limits>
#include <utility>

namespace orlimo {

namespace {

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
QDBusMessage question()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        portalService(), portalPath(), settingsInterface(), QStringLiteral("Read"));
    call.setArguments({appearanceGroup(), colorSchemeKey()});
    return call;
}

/// What is in a variant, however many times it is wrapped: `Read` wraps its answer twice.
QVariant unwrapped(QVariant value)
{
    while (value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

ColorSchemePortal::ColorSchemePortal(QDBusConnection sessionBus, Handler handler)
    : didHear(std::move(handler))
    , bus(std::move(sessionBus))
    , portals(portalService(), bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    if (!bus.isConnected()) {
        return;
    }
    connect(
        &portals,
        &QDBusServiceWatcher::serviceOwnerChanged,
        this,
        [this](const QString&, const QString&, const QString& owner) {
            portal.clear();
            if (!owner.isEmpty()) {
                ask();
            }
        });
    // From any sender: to connect to a named one, the toolkit would wait for the bus to say who
    // that is.
    bus.connect(
        QString(),
        portalPath(),
        settingsInterface(),
        QStringLiteral("SettingChanged"),
        QStringList{appearanceGroup(), colorSchemeKey()},
        QStringLiteral("ssv"),
        this,
        SLOT(settingDidChange(QString, QString, QDBusVariant, QDBusMessage)));
    ask();
}

void ColorSchemePortal::ask()
{
    const int number = ++questions;
    // Without a limit, which would wake the program up for nothing: the bus answers for one who
    // goes.
    constexpr int noLimit = std::numeric_limits<int>::max();
    auto* const call = new QDBusPendingCallWatcher(bus.asyncCall(question(), noLimit), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, number] {
        call->deleteLater();
        const QDBusMessage reply = call->reply();
        if (number != questions) {
            return;
        }
        // Also of one that does not know the setting yet.
        portal = reply.service();
        if (reply.type() == QDBusMessage::ReplyMessage) {
            hear(reply.arguments().value(0));
        }
    });
}

void ColorSchemePortal::settingDidChange(
    const QString& /*group*/,
    const QString& /*key*/,
    const QDBusVariant& value,
    const QDBusMessage& message)
{
    if (message.service() == portal) {
        hear(value.variant());
    }
}

void ColorSchemePortal::hear(const QVariant& value)
{
    const QVariant number = unwrapped(value);
    if (number.userType() != QMetaType::UInt) {
        return;
    }
    const auto scheme = ColorScheme(number.toUInt());
    const bool isKnown = scheme == ColorScheme::dark || scheme == ColorScheme::light;
    didHear(isKnown ? scheme : ColorScheme::noPreference);
}

} // namespace orlimo
