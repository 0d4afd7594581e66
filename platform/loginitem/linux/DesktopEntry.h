#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The text of desktop files, as freedesktop.org has laid it down.
namespace orlimo::desktopEntry {

/// `text` as a value of the type string.
[[nodiscard]] std::string stringValue(std::string_view text);

/// One argument of a command line that stands for exactly `text`, as it is written in the value of
/// Exec: quoted, and escaped by the rules of quoting, of field codes and of strings.
[[nodiscard]] std::string execArgument(std::string_view text);

/// The value of `key` in the group "Desktop Entry" of a file's `content`, escapes untouched; the
/// last one counts.
[[nodiscard]] std::optional<std::string_view>
lastValue(std::string_view content, std::string_view key);

} // namespace orlimo::desktopEntry
