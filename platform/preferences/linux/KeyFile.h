#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct _GKeyFile; // NOLINT(bugprone-reserved-identifier): GLib's name

namespace orlimo {

/// Groups of keys with values, as settings files and desktop entries have them. Comments, blank
/// lines and the order of lines are kept. Values are as they stand in the file, escapes untouched.
class KeyFile
{
public:
    /// Empty.
    KeyFile();

    /// What `text` holds. Absent where it is something else.
    [[nodiscard]] static std::optional<KeyFile> parse(const std::string& text);

    /// The keys of `group` in the order of the file. Empty where there is no such group.
    [[nodiscard]] std::vector<std::string> keys(const std::string& group) const;

    /// The last value of `key`, without white space around it. Absent when there is none.
    [[nodiscard]] std::optional<std::string>
    value(const std::string& group, const std::string& key) const;

    /// Replaces the value of `key`. A new key goes to the end of the group.
    void setValue(const std::string& group, const std::string& key, const std::string& value);

    /// The same, but a new key goes behind the last one that precedes it in alphabetical order.
    void setSortedValue(const std::string& group, const std::string& key, const std::string& value);

    /// Stores `text` as a value of the type string: escaped.
    void setString(const std::string& group, const std::string& key, const std::string& text);

    /// The whole file.
    [[nodiscard]] std::string text() const;

private:
    struct Release
    {
        void operator()(_GKeyFile* file) const;
    };

    std::unique_ptr<_GKeyFile, Release> file;
};

} // namespace orlimo
