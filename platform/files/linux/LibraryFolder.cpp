#include "platform/files/LibraryFolder.h"

#include "platform/files/linux/HomeFolder.h"
#include "platform/process/UserDatabase.h"

#include <cstdlib>

namespace orlimo {

std::optional<std::filesystem::path>
homeFolder(const char* homeVariable, const std::optional<std::string>& homeInUserDatabase)
{
    if (homeVariable != nullptr && *homeVariable != '\0') {
        return homeVariable;
    }
    if (homeInUserDatabase && !homeInUserDatabase->empty()) {
        return *homeInUserDatabase;
    }
    return std::nullopt;
}

std::optional<std::string> homeInUserDatabase()
{
    const auto user = currentUserEntry();
    return user ? user->homeDirectory : std::nullopt;
}

std::optional<std::filesystem::path> libraryFolder()
{
    const char* const homeVariable =
        std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe): never set
    const bool isHomeSet = homeVariable != nullptr && *homeVariable != '\0';
    const auto home =
        homeFolder(homeVariable, isHomeSet ? std::optional<std::string>() : homeInUserDatabase());
    return home ? std::optional(*home / "Library") : std::nullopt;
}

} // namespace orlimo
