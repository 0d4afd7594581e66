#pragma once

#include <filesystem>
#include <optional>

namespace orlimo {

/// The user's Library folder, the folder that holds the message store's "Messages" folder. Absent
/// when the host knows no home for the user; whether the folder exists on disk is not asked.
///
/// Computed afresh at each call. Main thread.
[[nodiscard]] std::optional<std::filesystem::path> libraryFolder();

} // namespace orlimo
