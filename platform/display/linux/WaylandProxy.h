#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include <wayland-client-core.h>

namespace orlimo {

/// Owns the client's side of one Wayland object, or none, and destroys it at the end of its own
/// life, with a request if the object has one for that. Must not outlive its connection. Used on
/// the connection's thread.
class WaylandProxy
{
public:
    WaylandProxy() = default;

    /// Owns `owned`, which may be null; `destructor` is the request that ends the object.
    explicit WaylandProxy(wl_proxy* owned, std::optional<std::uint32_t> destructor = {})
        : proxy(owned)
        , destroy(destructor)
    {}
    WaylandProxy(WaylandProxy&& other) noexcept
        : proxy(std::exchange(other.proxy, nullptr))
        , destroy(other.destroy)
    {}
    WaylandProxy& operator=(WaylandProxy&& other) noexcept
    {
        std::swap(proxy, other.proxy);
        std::swap(destroy, other.destroy);
        return *this;
    }
    WaylandProxy(const WaylandProxy&) = delete;
    WaylandProxy& operator=(const WaylandProxy&) = delete;
    ~WaylandProxy()
    {
        if (proxy == nullptr) {
            return;
        }
        if (destroy) {
            wl_proxy_marshal_flags(
                proxy, *destroy, nullptr, wl_proxy_get_version(proxy), WL_MARSHAL_FLAG_DESTROY);
        } else {
            wl_proxy_destroy(proxy);
        }
    }

    [[nodiscard]] wl_proxy* get() const { return proxy; }
    [[nodiscard]] explicit operator bool() const { return proxy != nullptr; }

    /// Sends a request that creates no object. Does nothing if there is no object to send it to.
    template <typename... Arguments> void send(std::uint32_t request, Arguments... arguments) const
    {
        if (proxy != nullptr) {
            wl_proxy_marshal_flags(
                proxy, request, nullptr, wl_proxy_get_version(proxy), 0, arguments...);
        }
    }

    /// Sends a request whose first argument is a new object of `interface` and returns that object.
    /// Null if the connection is lost.
    template <typename... Arguments>
    [[nodiscard]] wl_proxy*
    create(std::uint32_t request, const wl_interface& interface, Arguments... arguments) const
    {
        return proxy == nullptr ? nullptr
                                : wl_proxy_marshal_flags(
                                      proxy,
                                      request,
                                      &interface,
                                      wl_proxy_get_version(proxy),
                                      0,
                                      nullptr,
                                      arguments...);
    }

    /// Passes each of the object's events to `receiver.receive(event, arguments)`. The receiver
    /// must live as long as the object and may destroy it while receiving.
    template <typename Receiver> void deliverTo(Receiver& receiver) const
    {
        if (proxy != nullptr) {
            wl_proxy_add_dispatcher(proxy, &deliver<Receiver>, nullptr, &receiver);
        }
    }

private:
    template <typename Receiver>
    static int deliver(
        const void* /*implementation*/,
        void* target,
        std::uint32_t event,
        const wl_message* /*message*/,
        wl_argument* arguments) noexcept
    {
        void* const receiver = wl_proxy_get_user_data(static_cast<wl_proxy*>(target));
        static_cast<Receiver*>(receiver)->receive(event, arguments);
        return 0;
    }

    wl_proxy* proxy = nullptr;
    std::optional<std::uint32_t> destroy;
};

} // namespace orlimo
