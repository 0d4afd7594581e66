#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QRect>
#include <QString>
#include <QVariant>

#include <string>
#include <vector>

namespace orlimo {

/// One element that a program exposes to assistive technology, queried anew at every call. One that
/// no longer exists has no name, no role, no state and no children.
class Accessible
{
public:
    /// The states that tests query, by their bit.
    enum class State {
        active = 1,
        checked = 4,
        enabled = 8,
        focusable = 11,
        focused = 12,
        showing = 25,
        visible = 30,
    };

    /// The element at `path` of the program that is `service` on the accessibility bus.
    Accessible(const QDBusConnection& accessibilityBus, QString service, QString path);

    [[nodiscard]] std::string name() const;
    /// As the protocol calls it, such as "check box".
    [[nodiscard]] std::string role() const;
    [[nodiscard]] bool is(State state) const;
    /// Where it is on the screen, in pixels.
    [[nodiscard]] QRect area() const;
    [[nodiscard]] std::vector<Accessible> children() const;

    /// Performs its action of that name, such as "Press"; a test failure when it has none.
    void perform(const std::string& action) const;

private:
    [[nodiscard]] QVariant
    call(const QString& interface, const QString& method, const QVariantList& arguments = {}) const;
    [[nodiscard]] QVariant property(const QString& interface, const QString& property) const;

    QDBusConnection bus;
    QString service;
    QString path;
};

} // namespace orlimo
