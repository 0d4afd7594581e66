#include "platform/process/UserDatabase.h"

#include <cerrno>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace orlimo {

std::optional<UserEntry> currentUserEntry()
{
    // Far more than any entry needs; a database that keeps requesting more is broken.
    constexpr std::size_t limit = std::size_t{1} << 20U;
    std::vector<char> strings(1024);
    passwd entry{};
    passwd* found = nullptr;
    int error = 0;
    while ((error = ::getpwuid_r(::getuid(), &entry, strings.data(), strings.size(), &found)) ==
               ERANGE &&
           strings.size() < limit)
    {
        strings.resize(strings.size() * 2);
    }
    if (error != 0 || found == nullptr) {
        return std::nullopt;
    }
    UserEntry user;
    if (found->pw_dir != nullptr) {
        user.homeDirectory = found->pw_dir;
    }
    return user;
}

} // namespace orlimo
