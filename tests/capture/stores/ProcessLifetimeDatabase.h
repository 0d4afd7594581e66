#pragma once

#include "capture/Database.h"

#include <filesystem>
#include <optional>

namespace orlimo {

/// A reader of the store in `libraryFolder` that lives to the end of the process, as the program's
/// own does: the statements of its fetches keep its connection open, so that destroying it would
/// leave the connection to nobody. What it logs at its construction is swallowed.
[[nodiscard]] Database&
processLifetimeDatabase(const std::optional<std::filesystem::path>& libraryFolder);

} // namespace orlimo
