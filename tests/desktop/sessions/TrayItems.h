#pragma once

#include <QDBusConnection>

#include <string>
#include <vector>

namespace orlimo {

/// The icons that programs have given to the tray of a session bus, used as a panel uses them.
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

    /// The registered icons: the name of each on the bus.
    [[nodiscard]] std::vector<std::string> services() const;

    /// The title of the icon of `service`.
    [[nodiscard]] std::string titleOf(const std::string& service) const;

    /// Tells the icon of `service` that it was clicked at `x`, `y` of the screen; a test failure
    /// when it does not take the click.
    void activate(const std::string& service, int x, int y) const;

private:
    QString connectionName;
    QDBusConnection bus;
};

} // namespace orlimo
