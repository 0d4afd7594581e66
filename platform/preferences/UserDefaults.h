#pragma once

#include <map>
#include <string>
#include <string_view>

namespace orlimo {

/// The user's persisted preferences. Nothing is cached: each read returns what the store holds now,
/// also when another process wrote it, except values that could not be stored. Main thread.
class UserDefaults
{
public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    /// The boolean under `key`. Absent is false, a number is true unless it is zero, a string is
    /// true when it begins with Y, y, T, t or a number that is not zero, and anything else is
    /// false. A store that cannot be read or parsed reads as empty and is left as it is;
    /// where it cannot be read, standard error or the system's log says so.
    [[nodiscard]] virtual bool boolForKey(std::string_view key) const = 0;

    /// Stores `value` under `key` at once. A store that cannot be written stays as it is, and
    /// standard error or the system's log says so; the value then overrides the store for this
    /// process's reads until a later write, of any key, has stored it too.
    virtual void setBool(bool value, std::string_view key) = 0;

    /// Stores `value` under a `key` that is absent, as setBool() does. Where the store could not be
    /// read or written, a value that turns out to be in it is neither replaced nor overridden.
    virtual void setDefault(bool value, std::string_view key) { setBool(value, key); }

    /// Every key that boolForKey() finds a value for, with that value in printed form.
    [[nodiscard]] virtual std::map<std::string, std::string> dictionaryRepresentation() const = 0;
};

/// The application's own store. Lives to the end of the process.
[[nodiscard]] UserDefaults& standardUserDefaults();

} // namespace orlimo
