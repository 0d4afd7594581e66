#pragma once

#include "platform/display/linux/WaylandDisplay.h"
#include "platform/display/linux/WaylandProxy.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

/// The globals that a compositor has announced: complete after the first round trip. Used on the
/// connection's thread.
class WaylandRegistry
{
public:
    /// An offered interface and the number to bind it by.
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

    /// Calls `globalAdded` for each later global, and `globalRemoved` with the number of each that
    /// is withdrawn.
    void observe(
        std::function<void(const Global&)> globalAdded,
        std::function<void(std::uint32_t)> globalRemoved);

    [[nodiscard]] const std::vector<Global>& globals() const { return list; }

    /// The first global of that interface; null if there is none.
    [[nodiscard]] const Global* find(std::string_view interface) const;

    /// Binds `global` with `version` of its interface. Null if the connection is lost.
    [[nodiscard]] wl_proxy*
    bind(const Global& global, const wl_interface& interface, std::uint32_t version) const;

    /// Handles the registry's own events.
    void receive(std::uint32_t event, const wl_argument* arguments);

private:
    std::vector<Global> list;
    std::function<void(const Global&)> onGlobalAdded;
    std::function<void(std::uint32_t)> onGlobalRemoved;
    WaylandProxy registry;
};

} // namespace orlimo
