#include "platform/LibraryFolder.h"

#include "platform/linux/HomeFolder.h"

#include <cerrno>
#include <cstdlib>
#include <vector>

#include <pwd.h>
#include <unistd.h>

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
    std::vector<char> strings(1024);
    passwd entry{};
    passwd* found = nullptr;
    int error = 0;
    while ((error = ::getpwuid_r(::getuid(), &entry, strings.data(), strings.size(), &found)) ==
           ERANGE) {
        strings.resize(strings.size() * 2);
    }
    if (error != 0 || found == nullptr || found->pw_dir == nullptr) {
        return std::nullopt;
    }
    return std::string(found->pw_dir);
}

std::optional<std::filesystem::path> libraryFolder()
{
    const char* const homeVariable =
        std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe): never set
    const bool answered = homeVariable != nullptr && *homeVariable != '\0';
    const auto home =
        homeFolder(homeVariable, answered ? std::optional<std::string>() : homeInUserDatabase());
    return home ? std::optional(*home / "Library") : std::nullopt;
}

} // namespace orlimo
