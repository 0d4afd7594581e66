#pragma once

#include "capture/Database.h"

#include <filesystem>
#include <optional>

namespace orlimo {

/// A reader of the store in `libraryFolder` that lives until the process ends, as the program's own
/// does: the statements of its fetches keep its connection open, so that destroying it would leak
/// the connection. What it logs at construction is discarded.
[[nodiscard]] Database& processLifetimeDatabase(std::optional<std::filesystem::path> libraryFolder);

} // namespace orlimo
