#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace orlimo {

/// The content of the store in `libraryFolder` and of its log, by name; missing files are absent.
/// Read by another process: closing a descriptor of a store would release the locks that this
/// process's own connections hold on it.
[[nodiscard]] std::map<std::string, std::string>
storeFiles(const std::filesystem::path& libraryFolder);

/// The names in `folder`, in alphabetical order.
[[nodiscard]] std::vector<std::string> namesIn(const std::filesystem::path& folder);

} // namespace orlimo
