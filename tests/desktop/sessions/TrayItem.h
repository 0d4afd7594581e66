#pragma once

#include "tests/desktop/sessions/BusConnection.h"
#include "tests/support/Await.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QPoint>
#include <QStringList>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// The one icon in the tray of a session bus, used as a panel uses it.
class TrayItem
{
public:
    explicit TrayItem(const std::string& busAddress)
        : bus(busAddress)
    {}

    /// Whether a panel shows what is registered.
    [[nodiscard]] bool hasHost() const
    {
        return watcherProperty("IsStatusNotifierHostRegistered").toBool();
    }

    /// How many icons are registered.
    [[nodiscard]] int items() const { return static_cast<int>(registered().size()); }

    /// Waits until one icon is registered, and no other.
    [[nodiscard]] bool awaitItem() const
    {
        return awaitWithPolling([this] { return items() == 1; });
    }

    [[nodiscard]] std::string title() const { return text("Title"); }
    /// Empty where the icon has no name.
    [[nodiscard]] std::string iconName() const { return text("IconName"); }

    /// The edges of the icon's pixmaps in pixels, a comma after each.
    [[nodiscard]] std::string iconSizes() const
    {
        const auto pixmaps = property("IconPixmap").value<QDBusArgument>();
        std::string sizes;
        pixmaps.beginArray();
        while (!pixmaps.atEnd()) {
            int width = 0;
            int height = 0;
            QByteArray pixels;
            pixmaps.beginStructure();
            pixmaps >> width >> height >> pixels;
            pixmaps.endStructure();
            sizes += std::to_string(width) + ",";
        }
        pixmaps.endArray();
        return sizes;
    }

    /// Clicks the icon; a test failure when it does not take the click.
    void click() const { send(itemPath, itemInterface, "Activate", {0, 0}); }

    /// The texts of the icon's menu, a comma after each.
    [[nodiscard]] std::string menu() const
    {
        std::string texts;
        for (const auto& [number, label] : entries()) {
            texts += label + ",";
        }
        return texts;
    }

    /// Chooses the entry of the menu with this text; a test failure when there is none.
    void choose(const std::string& label) const
    {
        for (const auto& [number, entry] : entries()) {
            if (entry == label) {
                send(
                    menuPath(),
                    menuInterface,
                    "Event",
                    {number,
                     QStringLiteral("clicked"),
                     QVariant::fromValue(QDBusVariant(QString())),
                     QVariant::fromValue(0U)});
                return;
            }
        }
        ADD_FAILURE() << "no entry " << label << " in " << menu();
    }

private:
    static constexpr QLatin1String itemPath{"/StatusNotifierItem"};
    static constexpr QLatin1String itemInterface{"org.kde.StatusNotifierItem"};
    static constexpr QLatin1String menuInterface{"com.canonical.dbusmenu"};

    [[nodiscard]] QStringList registered() const
    {
        return watcherProperty("RegisteredStatusNotifierItems").toStringList();
    }

    /// The name on the bus of the one icon's program.
    [[nodiscard]] QString service() const
    {
        const QStringList items = registered();
        EXPECT_EQ(items.size(), 1);
        // A watcher may name the object too.
        return items.value(0).section(u'/', 0, 0);
    }

    /// Absent as long as nobody responds.
    [[nodiscard]] QVariant propertyOf(
        const QString& owner, const QString& path, const QString& interface, const char* name) const
    {
        const QDBusMessage reply = bus.call(
            owner,
            path,
            QStringLiteral("org.freedesktop.DBus.Properties"),
            QStringLiteral("Get"),
            {interface, QString::fromLatin1(name)});
        return reply.type() == QDBusMessage::ReplyMessage
                   ? reply.arguments().value(0).value<QDBusVariant>().variant()
                   : QVariant();
    }

    [[nodiscard]] QVariant watcherProperty(const char* name) const
    {
        const auto watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
        return propertyOf(watcher, QStringLiteral("/StatusNotifierWatcher"), watcher, name);
    }

    [[nodiscard]] QVariant property(const char* name) const
    {
        return propertyOf(service(), itemPath, itemInterface, name);
    }
    [[nodiscard]] std::string text(const char* name) const
    {
        return property(name).toString().toStdString();
    }
    [[nodiscard]] QString menuPath() const
    {
        return property("Menu").value<QDBusObjectPath>().path();
    }

    QDBusMessage send(
        const QString& path,
        const QString& interface,
        const char* method,
        const QVariantList& arguments) const
    {
        auto reply = bus.call(service(), path, interface, QString::fromLatin1(method), arguments);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        return reply;
    }

    /// The entries of the menu with their numbers, in their order.
    [[nodiscard]] std::vector<std::pair<int, std::string>> entries() const
    {
        constexpr int root = 0;
        constexpr int allLevels = -1;
        const QDBusMessage reply =
            send(menuPath(), menuInterface, "GetLayout", {root, allLevels, QStringList{}});
        std::vector<std::pair<int, std::string>> found;
        if (reply.type() != QDBusMessage::ReplyMessage) {
            return found;
        }
        const auto layout = reply.arguments().value(1).value<QDBusArgument>();
        int number = 0;
        QVariantMap properties;
        layout.beginStructure();
        layout >> number >> properties;
        layout.beginArray();
        while (!layout.atEnd()) {
            QDBusVariant child;
            layout >> child;
            const auto entry = child.variant().value<QDBusArgument>();
            entry.beginStructure();
            entry >> number >> properties;
            entry.endStructure();
            found.emplace_back(
                number, properties.value(QStringLiteral("label")).toString().toStdString());
        }
        layout.endArray();
        layout.endStructure();
        return found;
    }

    BusConnection bus;
};

} // namespace orlimo
