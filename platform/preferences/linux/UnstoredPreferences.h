#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace orlimo {

/// Preferences that were set in this process and are not stored yet. They override what is stored,
/// so that a switch takes effect although the store could not be written. One thread at a time.
class UnstoredPreferences
{
public:
    using Values = std::map<std::string, bool>;

    /// Keeps `value` for `key`, whatever is or will be stored under it.
    void set(bool value, std::string_view key);

    /// Keeps `value` for `key` until a value turns out to be stored under it. A value that was set
    /// stays.
    void setDefault(bool value, std::string_view key);

    /// Discards the defaults of keys that `isStored` is true for.
    void dropDefaults(const std::function<bool(const std::string& key)>& isStored);

    /// Discards everything, once it has been stored.
    void clear() { entries.clear(); }

    /// The value kept for `key`. Absent when there is none.
    [[nodiscard]] std::optional<bool> value(std::string_view key) const;

    /// What is to be stored.
    [[nodiscard]] Values values() const;

private:
    struct Entry
    {
        bool value;
        bool isDefault;
    };

    std::map<std::string, Entry, std::less<>> entries;
};

} // namespace orlimo
