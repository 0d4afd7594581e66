#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <functional>

namespace orlimo {

/// What the user prefers, as the portal's setting `color-scheme` numbers it.
enum class ColorScheme : unsigned {
    noPreference = 0,
    dark = 1,
    light = 2,
};

/// The user's preference for dark or light windows, read from the desktop's Settings portal and
/// followed as it changes. No call waits: the preference comes with the event loop, and never where
/// there is no bus, no portal, or none that answers. A number that is none of the three is no
/// preference, and what is no number is not heard. Main thread.
class ColorSchemePortal final : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(ColorScheme)>;

    /// Asks at once. `handler` is called in the event loop with each preference that the portal
    /// tells, also with one that is as before.
    ColorSchemePortal(QDBusConnection sessionBus, Handler handler);

private:
    Q_SLOT void settingDidChange(
        const QString& group,
        const QString& key,
        const QDBusVariant& value,
        const QDBusMessage& message);
    void ask();
    void hear(const QVariant& value);

    Handler didHear;
    QDBusConnection bus;
    QDBusServiceWatcher portals;
    /// The name on the bus of who answered, which nobody else can send under; empty until then.
    QString portal;
    int questions = 0;
};

} // namespace orlimo
