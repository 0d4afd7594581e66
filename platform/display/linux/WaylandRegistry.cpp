#include "platform/display/linux/WaylandRegistry.h"

#include <algorithm>
#include <utility>

#include <wayland-client-protocol.h>

namespace orlimo {

namespace {

/// The registry's events, by their opcode.
constexpr std::uint32_t globalEvent = 0;
constexpr std::uint32_t globalRemoveEvent = 1;

} // namespace

WaylandRegistry::WaylandRegistry(const WaylandDisplay& display)
    : registry(reinterpret_cast<wl_proxy*>(wl_display_get_registry(display.get())))
{
    registry.deliverTo(*this);
}

void WaylandRegistry::observe(
    std::function<void(const Global&)> globalAdded,
    std::function<void(std::uint32_t)> globalRemoved)
{
    onGlobalAdded = std::move(globalAdded);
    onGlobalRemoved = std::move(globalRemoved);
}

const WaylandRegistry::Global* WaylandRegistry::find(std::string_view interface) const
{
    const auto found = std::ranges::find(list, interface, &Global::interface);
    return found == list.end() ? nullptr : &*found;
}

wl_proxy* WaylandRegistry::bind(
    const Global& global, const wl_interface& interface, std::uint32_t version) const
{
    // Unlike other requests this one chooses the interface and version of the new object.
    return wl_proxy_marshal_flags(
        registry.get(),
        WL_REGISTRY_BIND,
        &interface,
        version,
        0,
        global.name,
        interface.name,
        version,
        nullptr);
}

void WaylandRegistry::receive(std::uint32_t event, const wl_argument* arguments)
{
    const std::uint32_t name = arguments[0].u;
    if (event == globalEvent) {
        const Global global{name, arguments[1].s, arguments[2].u};
        list.push_back(global);
        if (onGlobalAdded) {
            onGlobalAdded(global);
        }
    } else if (event == globalRemoveEvent) {
        std::erase_if(list, [&](const Global& global) { return global.name == name; });
        if (onGlobalRemoved) {
            onGlobalRemoved(name);
        }
    }
}

} // namespace orlimo
