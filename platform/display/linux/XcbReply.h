#pragma once

#include <cstdlib>
#include <memory>

namespace orlimo {

/// Frees a reply of the X server.
struct XcbReplyDeleter
{
    void operator()(void* reply) const { std::free(reply); } // NOLINT: the C library's own
};

/// A reply of the X server, or a string of its library; empty if there was none, for example
/// because the window is gone.
template <typename Reply> using XcbReply = std::unique_ptr<Reply, XcbReplyDeleter>;

/// Owns `reply`, which may be null.
template <typename Reply> [[nodiscard]] XcbReply<Reply> owned(Reply* reply)
{
    return XcbReply<Reply>(reply);
}

} // namespace orlimo
