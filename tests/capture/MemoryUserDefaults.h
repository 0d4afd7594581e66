#pragma once

#include "platform/preferences/UserDefaults.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

/// Preferences in memory that record how they are used.
class MemoryUserDefaults final : public UserDefaults
{
public:
    [[nodiscard]] bool boolForKey(std::string_view key) const override;
    void setBool(bool value, std::string_view key) override;
    [[nodiscard]] std::map<std::string, std::string> dictionaryRepresentation() const override;

    /// Each call so far, in order: "read KEY", "write KEY = true" or "list".
    [[nodiscard]] const std::vector<std::string>& calls() const { return made; }

private:
    std::map<std::string, bool, std::less<>> values;
    mutable std::vector<std::string> made;
};

} // namespace orlimo
