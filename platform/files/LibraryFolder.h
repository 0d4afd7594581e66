#pragma once

#include <filesystem>
#include <optional>

namespace orlimo {

/// The user's Library folder, the folder that holds the message store's "Messages" folder. Absent
/// when the user has no known home; the folder need not exist.
///
/// Computed afresh at each call. Main thread.
[[nodiscard]] std::optional<std::filesystem::path> libraryFolder();

} // namespace orlimo
