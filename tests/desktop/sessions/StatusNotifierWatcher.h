#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>

#include <string>

namespace orlimo {

/// The watcher of a panel: the object on the bus with which items and panels register, and what a
/// person does with the one item that it knows. An operation on the item answers with what to
/// print.
class StatusNotifierWatcher final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    /// Takes the watcher's name on `sessionBus`. A panel that is there from the start is not told
    /// of by a signal.
    StatusNotifierWatcher(const QDBusConnection& sessionBus, bool withHost);

    [[nodiscard]] bool hasHost() const { return host; }
    void setHost(bool isPresent);

    [[nodiscard]] QStringList items() const { return registered; }

    /// Clicks the item.
    [[nodiscard]] std::string activate() const;

    /// The name of the item's icon, and the edges of its pixmaps in pixels, a comma after each.
    [[nodiscard]] std::string iconName() const;
    [[nodiscard]] std::string iconSizes() const;

    /// The texts of the item's menu, a comma after each.
    [[nodiscard]] std::string menu() const;

    /// Chooses the entry of the item's menu with this text.
    [[nodiscard]] std::string choose(const QString& text) const;

public Q_SLOTS: // NOLINT(readability-redundant-access-specifiers): it makes slots
    void RegisterStatusNotifierItem(const QString& service);
    void RegisterStatusNotifierHost(const QString& service);

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierItemUnregistered(const QString& service);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    [[nodiscard]] static int protocolVersion() { return 0; }

    [[nodiscard]] QVariant itemProperty(const QString& name) const;

    QDBusConnection bus;
    QDBusServiceWatcher owners;
    QStringList registered;
    bool host;
};

} // namespace orlimo
