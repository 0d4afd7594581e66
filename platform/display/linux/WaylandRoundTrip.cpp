#include "platform/display/linux/WaylandRoundTrip.h"

#include <wayland-client-protocol.h>

namespace orlimo {

WaylandRoundTrip::WaylandRoundTrip(wl_display* display)
    : callback(reinterpret_cast<wl_proxy*>(wl_display_sync(display)))
{
    callback.deliverTo(*this);
}

} // namespace orlimo
