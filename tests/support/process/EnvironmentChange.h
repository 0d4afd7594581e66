#pragma once

#include <optional>
#include <string>
#include <utility>

#include <stdlib.h>

namespace orlimo {

/// A variable of this process's environment set, or taken away where the value is absent, and put
/// back with the object. While there is one thread.
class EnvironmentChange
{
public:
    EnvironmentChange(std::string variableName, const std::optional<std::string>& value)
        : name(std::move(variableName))
    {
        if (const char* const former = ::getenv(name.c_str())) {
            before = former;
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
            ::setenv(name.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name.c_str());
        }
    }

    std::string name;
    std::optional<std::string> before;
};

} // namespace orlimo
