#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

namespace orlimo {

/// What the user prefers, as the portal's setting `color-scheme` numbers it.
enum class ColorScheme : unsigned {
    noPreference = 0,
    dark = 1,
    light = 2,
};

/// The user's preference for dark or light windows, read from the desktop's Settings portal
/// (org.freedesktop.portal.Settings) and followed as it changes. Nothing blocks: the preference
/// arrives in the event loop, and never where there is no bus, no portal, or none that replies. A
/// number that is none of the three means no preference; a value of another type is ignored. Main
/// thread.
class ColorSchemePortal final : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(ColorScheme)>;

    /// Starts reading. `handler` is called in the event loop with each preference that the portal
    /// reports, also with an unchanged one.
    ColorSchemePortal(QDBusConnection sessionBus, Handler handler);

private:
    /// The portal's signal: the setting's group, its key and its new value.
    Q_SLOT void settingDidChange(const QDBusMessage& message);
    void read();
    void report(const QVariant& value);

    Handler onPreference;
    QDBusConnection bus;
    QDBusServiceWatcher portalWatcher;
    /// The portal's unique bus name, which no other program can send under; asked of the bus, since
    /// Qt 6.8 leaves the sender of a reply empty. Unknown until the bus has replied, and empty once
    /// the portal has exited.
    std::optional<QString> portalOwner;
    int readCount = 0;
};

} // namespace orlimo
