#pragma once

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
    enum class State { checked = 4, focused = 12, showing = 25 };

    /// The element at `path` of the program that is `service` on the accessibility bus.
    Accessible(const QDBusConnection& accessibilityBus, QString service, QString path);

    [[nodiscard]] std::string name() const;
    /// As the protocol calls it, such as "check box".
    [[nodiscard]] std::string role() const;
    [[nodiscard]] bool is(State state) const;
    /// Where it is on the screen, in pixels.
    [[nodiscard]] QRect area() const;
    [[nodiscard]] std::vector<Accessible> children() const;

private:
    [[nodiscard]] QVariant
    call(const char* interface, const char* method, const QVariantList& arguments = {}) const;

    QDBusConnection bus;
    QString service;
    QString path;
};

} // namespace orlimo
