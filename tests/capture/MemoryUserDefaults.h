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
    [[nodiscard]] bool boolForKey(std::string_view key) const override
    {
        made.push_back("read " + std::string(key));
        const auto found = values.find(key);
        return found != values.end() && found->second;
    }

    void setBool(bool value, std::string_view key) override
    {
        made.push_back("write " + std::string(key) + (value ? " = true" : " = false"));
        values.insert_or_assign(std::string(key), value);
    }

    [[nodiscard]] std::map<std::string, std::string> dictionaryRepresentation() const override
    {
        made.emplace_back("list");
        std::map<std::string, std::string> dictionary;
        for (const auto& [key, value] : values) {
            dictionary.emplace(key, value ? "true" : "false");
        }
        return dictionary;
    }

    /// Each call so far, in order: "read KEY", "write KEY = true" or "list".
    [[nodiscard]] const std::vector<std::string>& calls() const { return made; }

private:
    std::map<std::string, bool, std::less<>> values;
    mutable std::vector<std::string> made;
};

} // namespace orlimo
