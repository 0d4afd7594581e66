#pragma once

#include "tests/app/Accessible.h"

#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// What the programs on one accessibility bus tell assistive technology.
class AccessibilityTree
{
public:
    /// Connects to the bus at `busAddress`; no connection is a test failure.
    explicit AccessibilityTree(const std::string& busAddress);
    AccessibilityTree(const AccessibilityTree&) = delete;
    AccessibilityTree& operator=(const AccessibilityTree&) = delete;
    ~AccessibilityTree();

    /// The program that calls itself `name`.
    [[nodiscard]] std::optional<Accessible> application(const std::string& name) const;

    /// Everything that the program `application` shows at the moment, from the outside in and from
    /// the first to the last.
    [[nodiscard]] std::vector<Accessible> showing(const std::string& application) const;

    /// The first of these with the role and the name.
    [[nodiscard]] std::optional<Accessible>
    find(const std::string& application, const std::string& role, const std::string& name) const;

    /// These as lines of text, for people.
    [[nodiscard]] std::string describe(const std::string& application) const;

private:
    QString connectionName;
    QDBusConnection bus;
};

} // namespace orlimo
