#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <grp.h>
#include <unistd.h>

namespace orlimo {

inline constexpr unsigned nobody = 65534;

/// Takes the superuser's rights away from this process for good, so that file permissions count.
/// Does nothing for anyone else. Called in a child process.
inline void becomeUnprivilegedUser()
{
    if (::geteuid() == 0 &&
        (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0))
    {
        std::abort();
    }
}

/// While it lives, this process acts as that user. Bits for its group count for it still.
class UnprivilegedScope
{
public:
    UnprivilegedScope()
    {
        if (isSuperuser && ::seteuid(nobody) != 0) {
            std::abort();
        }
    }
    UnprivilegedScope(const UnprivilegedScope&) = delete;
    UnprivilegedScope& operator=(const UnprivilegedScope&) = delete;
    ~UnprivilegedScope()
    {
        if (isSuperuser && ::seteuid(0) != 0) {
            std::abort();
        }
    }

private:
    bool isSuperuser = ::geteuid() == 0;
};

/// Makes `folder` that user's own. Does nothing where this process is not the superuser's.
inline void handToUnprivilegedUser(const std::filesystem::path& folder)
{
    if (::geteuid() == 0 && ::chown(folder.c_str(), nobody, nobody) != 0) {
        throw std::system_error(errno, std::generic_category(), folder.string());
    }
}

} // namespace orlimo
