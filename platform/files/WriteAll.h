#pragma once

#include <cerrno>
#include <string_view>

#include <poll.h>
#include <unistd.h>

namespace orlimo {

/// Writes `bytes` to `descriptor`, in one write unless the system accepts only a part. What cannot
/// be written is dropped.
inline void writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            // The parent process passed a non-blocking descriptor: wait for its reader.
            pollfd writable{descriptor, POLLOUT, 0};
            ::poll(&writable, 1, -1);
        } else if (written == 0 || errno != EINTR) {
            return;
        }
    }
}

} // namespace orlimo
