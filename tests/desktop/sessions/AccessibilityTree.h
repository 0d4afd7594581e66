#pragma once

#include "tests/app/Accessible.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace orlimo {

/// What the programs on one accessibility bus tell assistive technology.
class AccessibilityTree
{
public:
    /// Connects to the bus at `busAddress`; no connection is a test failure.
    explicit AccessibilityTree(const std::string& busAddress)
        : connectionName(QString::fromStdString("accessibility " + busAddress))
        , bus(QDBusConnection::connectToBus(QString::fromStdString(busAddress), connectionName))
    {
        EXPECT_TRUE(bus.isConnected()) << busAddress;
    }
    AccessibilityTree(const AccessibilityTree&) = delete;
    AccessibilityTree& operator=(const AccessibilityTree&) = delete;
    ~AccessibilityTree() { QDBusConnection::disconnectFromBus(connectionName); }

    /// Everything that the program `application` shows at the moment, from the outside in and from
    /// the first to the last.
    [[nodiscard]] std::vector<Accessible> showing(const std::string& application) const
    {
        const Accessible root(
            bus,
            QStringLiteral("org.a11y.atspi.Registry"),
            QStringLiteral("/org/a11y/atspi/accessible/root"));
        std::vector<Accessible> found;
        for (const Accessible& program : root.children()) {
            if (program.name() == application) {
                for (const Accessible& window : program.children()) {
                    collectShowing(window, found);
                }
                break;
            }
        }
        return found;
    }

    /// The first of these with the role and the name.
    [[nodiscard]] std::optional<Accessible>
    find(const std::string& application, const std::string& role, const std::string& name) const
    {
        for (const Accessible& element : showing(application)) {
            if (element.name() == name && element.role() == role) {
                return element;
            }
        }
        return std::nullopt;
    }

    /// These as lines of text, for people.
    [[nodiscard]] std::string describe(const std::string& application) const
    {
        std::ostringstream text;
        for (const Accessible& element : showing(application)) {
            const QRect area = element.area();
            text << element.role() << " \"" << element.name() << "\" " << area.x() << ','
                 << area.y() << ' ' << area.width() << 'x' << area.height() << '\n';
        }
        return text.str();
    }

private:
    static void collectShowing(const Accessible& element, std::vector<Accessible>& found)
    {
        if (!element.is(Accessible::State::showing)) {
            return;
        }
        found.push_back(element);
        for (const Accessible& child : element.children()) {
            collectShowing(child, found);
        }
    }

    QString connectionName;
    QDBusConnection bus;
};

} // namespace orlimo
