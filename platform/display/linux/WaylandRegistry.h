#pragma once

#include "platform/display/linux/WaylandDisplay.h"
#include "platform/display/linux/WaylandProxy.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

/// What a compositor offers, as far as it has told: complete after the first round trip. The
/// connection's thread.
class WaylandRegistry
{
public:
    /// One thing that is offered: an interface, and the number to ask for it by.
    struct Global
    {
        std::uint32_t name = 0;
        std::string interface;
        std::uint32_t version = 0;
    };

    explicit WaylandRegistry(const WaylandDisplay& display);
    WaylandRegistry(const WaylandRegistry&) = delete;
    WaylandRegistry& operator=(const WaylandRegistry&) = delete;
    ~WaylandRegistry() = default;

    /// Calls `appeared` for what is offered from now on, and `vanished` with the number of what no
    /// longer is.
    void observe(
        std::function<void(const Global&)> globalAdded,
        std::function<void(std::uint32_t)> globalRemoved);

    [[nodiscard]] const std::vector<Global>& globals() const { return list; }

    /// The first thing of that interface; null when there is none.
    [[nodiscard]] const Global* find(std::string_view interface) const;

    /// Makes the object that speaks to `global`, in `version` of its interface. Null when the
    /// connection is lost.
    [[nodiscard]] wl_proxy*
    bind(const Global& global, const wl_interface& interface, std::uint32_t version) const;

    /// Takes the registry's own events.
    void receive(std::uint32_t event, const wl_argument* arguments);

private:
    std::vector<Global> list;
    std::function<void(const Global&)> onGlobalAdded;
    std::function<void(std::uint32_t)> onGlobalRemoved;
    WaylandProxy registry;
};

} // namespace orlimo
