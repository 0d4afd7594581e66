#include "tests/desktop/sessions/AccessibilityTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace orlimo {

namespace {

/// Adds `element` and what is in it to `found`, as far as it can be seen.
void collectShowing(const Accessible& element, std::vector<Accessible>& found)
{
    if (!element.is(Accessible::State::showing)) {
        return;
    }
    found.push_back(element);
    for (const Accessible& child : element.children()) {
        collectShowing(child, found);
    }
}

} // namespace

AccessibilityTree::AccessibilityTree(const std::string& busAddress)
    : connectionName(QString::fromStdString("accessibility " + busAddress))
    , bus(QDBusConnection::connectToBus(QString::fromStdString(busAddress), connectionName))
{
    EXPECT_TRUE(bus.isConnected()) << busAddress;
}

AccessibilityTree::~AccessibilityTree()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

std::optional<Accessible> AccessibilityTree::application(const std::string& name) const
{
    const Accessible root(
        bus,
        QStringLiteral("org.a11y.atspi.Registry"),
        QStringLiteral("/org/a11y/atspi/accessible/root"));
    const auto programs = root.children();
    const auto found =
        std::ranges::find_if(programs, [&](const Accessible& one) { return one.name() == name; });
    return found == programs.end() ? std::nullopt : std::optional(*found);
}

std::vector<Accessible> AccessibilityTree::showing(const std::string& name) const
{
    std::vector<Accessible> found;
    if (const auto program = application(name)) {
        for (const Accessible& window : program->children()) {
            collectShowing(window, found);
        }
    }
    return found;
}

std::optional<Accessible> AccessibilityTree::find(
    const std::string& application, const std::string& role, const std::string& name) const
{
    const auto elements = showing(application);
    const auto found = std::ranges::find_if(elements, [&](const Accessible& element) {
        return element.name() == name && element.role() == role;
    });
    return found == elements.end() ? std::nullopt : std::optional(*found);
}

std::string AccessibilityTree::describe(const std::string& application) const
{
    std::ostringstream text;
    for (const Accessible& element : showing(application)) {
        const QRect area = element.area();
        text << element.role() << " \"" << element.name() << "\" " << area.x() << ',' << area.y()
             << ' ' << area.width() << 'x' << area.height() << '\n';
    }
    return text.str();
}

} // namespace orlimo
