#include "platform/preferences/linux/UnstoredPreferences.h"

namespace orlimo {

void UnstoredPreferences::set(bool value, std::string_view key)
{
    entries.insert_or_assign(std::string(key), Entry{.value = value, .isDefault = false});
}

void UnstoredPreferences::setDefault(bool value, std::string_view key)
{
    entries.try_emplace(std::string(key), Entry{.value = value, .isDefault = true});
}

void UnstoredPreferences::dropDefaults(const std::function<bool(const std::string& key)>& isStored)
{
    std::erase_if(entries, [&isStored](const auto& entry) {
        return entry.second.isDefault && isStored(entry.first);
    });
}

std::optional<bool> UnstoredPreferences::value(std::string_view key) const
{
    const auto found = entries.find(key);
    return found == entries.end() ? std::nullopt : std::optional(found->second.value);
}

UnstoredPreferences::Values UnstoredPreferences::values() const
{
    Values values;
    for (const auto& [key, entry] : entries) {
        values.emplace(key, entry.value);
    }
    return values;
}

} // namespace orlimo
