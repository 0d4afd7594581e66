#pragma once

#include "platform/loginitem/LoginItemService.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace orlimo {

/// A desktop file in the folder whose programs the desktop starts at each login. The file system
/// alone holds the state. Main thread.
///
/// A user who switches the program off in the desktop's settings leaves the file there with a mark
/// in it.
class AutostartEntry
{
public:
    /// `folder` need not exist; both are absolute. An empty `programFile` is one that cannot be
    /// found.
    AutostartEntry(const std::filesystem::path& folder, std::filesystem::path programFile);

    /// What the desktop could not start counts as not registered: a file that it cannot read or
    /// parse, or something else under the file's name.
    [[nodiscard]] LoginItemStatus status() const;

    /// Writes the file, replacing an earlier one except the user's mark, and creates a missing
    /// folder. Refused where the program cannot be found, where the earlier file cannot be read
    /// (the mark would be lost) or is no regular file, and where a path is not valid UTF-8, the
    /// encoding of desktop files.
    [[nodiscard]] std::optional<ServiceError> add() const;

    /// Removes the file, whatever is in it; of a symbolic link the link. An error when there is
    /// none.
    [[nodiscard]] std::optional<ServiceError> remove() const;

private:
    const std::filesystem::path file;
    const std::filesystem::path program;
};

} // namespace orlimo
