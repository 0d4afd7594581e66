#pragma once

#include "platform/files/UniqueFd.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <sys/socket.h>
#include <sys/un.h>

namespace orlimo {

inline sockaddr_un socketAddress(const std::filesystem::path& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(&address.sun_path[0], path.c_str(), sizeof address.sun_path - 1);
    return address;
}

/// A socket listening at `path`, which it creates. Queues `backlog` connections and one more, and
/// accepts none.
inline UniqueFd listeningSocket(const std::filesystem::path& path, int backlog)
{
    UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_un address = socketAddress(path);
    const auto* const general = reinterpret_cast<const sockaddr*>(&address);
    if (::bind(socket.get(), general, sizeof address) != 0 || ::listen(socket.get(), backlog) != 0)
    {
        throw std::system_error(errno, std::generic_category(), path);
    }
    return socket;
}

} // namespace orlimo
