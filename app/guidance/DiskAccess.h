#pragma once

#include "platform/process/UserDatabase.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace orlimo {

/// Whether the user has granted the program access to the whole disk: tried by listing the folder
/// "~/Library/Containers/com.apple.stocks" of the home that `userEntry` finds in the user database.
/// An entry without a home is a fatal stop; without an entry the tilde stays, a folder that
/// normally does not exist. Main thread.
[[nodiscard]] bool hasFullDiskAccess(
    const std::function<std::optional<UserEntry>()>& userEntry,
    const std::function<bool(const std::filesystem::path& folder)>& canListDirectory);

} // namespace orlimo
