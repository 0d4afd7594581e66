#pragma once

#include <QDBusConnection>
#include <QDBusMessage>

#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// The icons that programs have given to the tray of a session bus, used as a panel uses them. An
/// icon is known by its program's name on the bus, `service`.
class TrayItems
{
public:
    /// Connects to the bus at `busAddress`; no connection is a test failure.
    explicit TrayItems(const std::string& busAddress);
    TrayItems(const TrayItems&) = delete;
    TrayItems& operator=(const TrayItems&) = delete;
    ~TrayItems();

    /// Whether a panel shows what is registered.
    [[nodiscard]] bool hasHost() const;

    /// The registered icons.
    [[nodiscard]] std::vector<std::string> services() const;

    [[nodiscard]] std::string titleOf(const std::string& service) const;

    /// The name of the icon, empty where it has none, and the edges of its pixmaps in pixels, a
    /// comma after each.
    [[nodiscard]] std::string iconNameOf(const std::string& service) const;
    [[nodiscard]] std::string iconSizesOf(const std::string& service) const;

    /// Clicks the icon at `x`, `y` of the screen; a test failure when it does not take the click.
    void activate(const std::string& service, int x, int y) const;

    /// The texts of the icon's menu, a comma after each.
    [[nodiscard]] std::string menuOf(const std::string& service) const;

    /// Chooses the entry of the menu with this text; a test failure when there is none.
    void choose(const std::string& service, const std::string& text) const;

private:
    [[nodiscard]] QDBusMessage call(
        const QString& service,
        const QString& path,
        const QString& method,
        const QVariantList& arguments) const;
    [[nodiscard]] QVariant
    property(const QString& service, const QString& interface, const QString& name) const;
    [[nodiscard]] QVariant itemProperty(const std::string& service, const QString& name) const;
    [[nodiscard]] QString menuPath(const std::string& service) const;
    /// The entries of the menu, by number, in their order.
    [[nodiscard]] std::vector<std::pair<int, std::string>>
    entries(const std::string& service) const;

    QString connectionName;
    QDBusConnection bus;
};

} // namespace orlimo
