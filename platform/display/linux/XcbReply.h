#pragma once

#include <cstdlib>
#include <memory>

namespace orlimo {

/// Gives what the X server answered back to the C library.
struct XcbReplyDeleter
{
    void operator()(void* reply) const { std::free(reply); } // NOLINT: the C library's own
};

/// An answer of the X server, or a text of its library; empty when there was none, as for a window
/// that has gone.
template <typename Reply> using XcbReply = std::unique_ptr<Reply, XcbReplyDeleter>;

/// Owns `reply`, which may be null.
template <typename Reply> [[nodiscard]] XcbReply<Reply> owned(Reply* reply)
{
    return XcbReply<Reply>(reply);
}

} // namespace orlimo
