#pragma once

#include <QByteArray>

#include <optional>
#include <string>
#include <utility>

namespace orlimo {

/// A variable of this process's environment set, or taken away where the value is absent, and put
/// back with the object. While there is one thread.
class EnvironmentChange
{
public:
    EnvironmentChange(std::string variableName, const std::optional<std::string>& value)
        : name(std::move(variableName))
    {
        if (qEnvironmentVariableIsSet(name.c_str())) {
            before = qgetenv(name.c_str()).toStdString();
        }
        set(value);
    }
    EnvironmentChange(const EnvironmentChange&) = delete;
    EnvironmentChange& operator=(const EnvironmentChange&) = delete;
    ~EnvironmentChange() { set(before); }

private:
    void set(const std::optional<std::string>& value) const
    {
        if (value) {
            qputenv(name.c_str(), QByteArray::fromStdString(*value));
        } else {
            qunsetenv(name.c_str());
        }
    }

    std::string name;
    std::optional<std::string> before;
};

} // namespace orlimo
