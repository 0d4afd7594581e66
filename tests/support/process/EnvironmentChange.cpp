#include "tests/support/process/EnvironmentChange.h"

#include <utility>

#include <stdlib.h>

namespace orlimo {

namespace {

void setVariable(const std::string& name, const std::optional<std::string>& value)
{
    if (value) {
        ::setenv(name.c_str(), value->c_str(), 1);
    } else {
        ::unsetenv(name.c_str());
    }
}

std::optional<std::string> variable(const std::string& name)
{
    const char* const value = ::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

} // namespace

EnvironmentChange::EnvironmentChange(
    std::string variableName, const std::optional<std::string>& value)
    : name(std::move(variableName))
    , before(variable(name))
{
    setVariable(name, value);
}

EnvironmentChange::~EnvironmentChange()
{
    setVariable(name, before);
}

} // namespace orlimo
