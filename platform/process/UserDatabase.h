#pragma once

#include <optional>
#include <string>

namespace orlimo {

/// What the user database knows of a user.
struct UserEntry
{
    /// Bytes as the file system takes them. An entry without one is damaged.
    std::optional<std::string> homeDirectory;
};

/// The entry of the user who runs the process, from the user database and never from the
/// environment. None when there is no such entry.
[[nodiscard]] std::optional<UserEntry> currentUserEntry();

} // namespace orlimo
