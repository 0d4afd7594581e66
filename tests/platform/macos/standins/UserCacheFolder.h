#pragma once

#include <optional>
#include <string>

namespace orlimo {

/// The user's own part of the system's folder for caches, as confstr names it; none where it fails.
/// A test gives it back as it found it. Main thread.
[[nodiscard]] std::optional<std::string>& userCacheFolder();

} // namespace orlimo
