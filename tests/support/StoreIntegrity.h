#pragma once

#include <filesystem>
#include <string>

namespace orlimo {

/// What SQLite says of the store's integrity; "ok" when it finds nothing wrong.
[[nodiscard]] std::string integrityOf(const std::filesystem::path& store);

[[nodiscard]] int messagesIn(const std::filesystem::path& store);

} // namespace orlimo
