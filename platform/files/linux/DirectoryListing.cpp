#include "platform/files/DirectoryListing.h"

#include <system_error>

namespace orlimo {

bool canListDirectory(const std::filesystem::path& folder)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        entry.increment(error);
    }
    return !error;
}

} // namespace orlimo
