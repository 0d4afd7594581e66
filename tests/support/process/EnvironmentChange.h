#pragma once

#include <optional>
#include <string>

namespace orlimo {

/// A variable of this process's environment set, or taken away where the value is absent, and put
/// back with the object. While there is one thread.
class EnvironmentChange
{
public:
    EnvironmentChange(std::string variableName, const std::optional<std::string>& value);
    EnvironmentChange(const EnvironmentChange&) = delete;
    EnvironmentChange& operator=(const EnvironmentChange&) = delete;
    ~EnvironmentChange();

private:
    std::string name;
    std::optional<std::string> before;
};

} // namespace orlimo
