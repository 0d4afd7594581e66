#pragma once

#include "platform/display/linux/WaylandProxy.h"

#include <cstdint>

#include <wayland-client-core.h>

namespace orlimo {

/// A request whose response shows that the compositor has handled everything requested before it.
/// Must not outlive its connection. Used on the connection's thread.
class WaylandRoundTrip
{
public:
    /// Writes the request, which is sent with the next flush.
    explicit WaylandRoundTrip(wl_display* display);
    WaylandRoundTrip(const WaylandRoundTrip&) = delete;
    WaylandRoundTrip& operator=(const WaylandRoundTrip&) = delete;
    ~WaylandRoundTrip() = default;

    /// Whether the response has been dispatched.
    [[nodiscard]] bool isComplete() const { return hasResponse; }

    /// Handles the response.
    void receive(std::uint32_t /*event*/, const wl_argument* /*arguments*/) { hasResponse = true; }

private:
    bool hasResponse = false;
    WaylandProxy callback;
};

} // namespace orlimo
