#pragma once

#include <optional>
#include <string>

namespace orlimo {

/// A user's entry in the user database.
struct UserEntry
{
    /// A native path. An entry without one is damaged.
    std::optional<std::string> homeDirectory;
};

/// The entry of the process's real user, from the user database and never from the environment.
/// Absent when there is none. Any thread.
[[nodiscard]] std::optional<UserEntry> currentUserEntry();

} // namespace orlimo
