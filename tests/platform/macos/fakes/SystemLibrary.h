#pragma once

#include <optional>
#include <string>

namespace orlimo {

/// The user's part of the system's folder for caches; none where the system has none. Main thread.
[[nodiscard]] std::optional<std::string>& userCacheFolder();

} // namespace orlimo
