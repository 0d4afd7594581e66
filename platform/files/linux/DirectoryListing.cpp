#include "platform/files/DirectoryListing.h"

#include <system_error>

namespace orlimo {

std::optional<std::vector<std::string>> contentsOfDirectory(const std::filesystem::path& folder)
{
    std::error_code error;
    std::vector<std::string> names;
    std::filesystem::directory_iterator entry(folder, error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        names.push_back(entry->path().filename().native());
        entry.increment(error);
    }
    return error ? std::nullopt : std::optional(std::move(names));
}

} // namespace orlimo
