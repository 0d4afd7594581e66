#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include <wayland-client-core.h>

namespace orlimo {

/// A connection to a Wayland compositor on which nothing waits for longer than it is told. Used on
/// one thread; the objects made on it must go before it does.
class WaylandDisplay
{
public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// How far what was written has come.
    enum class Output {
        sent,    ///< all of it is with the compositor
        waiting, ///< the compositor does not take more at present
        lost,    ///< the connection has ended
    };

    /// The result of a round trip.
    enum class Response {
        received,
        timedOut, ///< none before the deadline
        lost,     ///< the connection has ended
    };

    /// Connects to the compositor of that name, a socket in the user's runtime folder unless it is
    /// an absolute path; an empty name stands for the session's own (WAYLAND_DISPLAY). Absent, with
    /// the reason in `error`, where that fails: `resource_unavailable_try_again` where a compositor
    /// listens and does not take the connection before `deadline`, which may have passed already.
    [[nodiscard]] static std::optional<WaylandDisplay>
    connect(const std::string& name, Deadline deadline, std::error_code& error);

    [[nodiscard]] wl_display* get() const { return display.get(); }

    /// The connection itself as an object, the one that others are made from.
    [[nodiscard]] wl_proxy* proxy() const;

    /// Readable when there are events to dispatch. Belongs to the connection.
    [[nodiscard]] int descriptor() const { return wl_display_get_fd(display.get()); }

    /// Sends what was written, as far as that goes without waiting.
    [[nodiscard]] Output flush();

    /// Sends all that was written. False when the connection has ended, or when the compositor does
    /// not take it before `deadline`.
    [[nodiscard]] bool flush(Deadline deadline);

    /// Takes the events that have come, without waiting, and delivers them. False when the
    /// connection has ended.
    [[nodiscard]] bool dispatch();

    /// Delivers events until the compositor has handled everything that was written so far, or
    /// until `deadline`.
    [[nodiscard]] Response roundTrip(Deadline deadline);

private:
    struct Disconnect
    {
        void operator()(wl_display* connected) const { wl_display_disconnect(connected); }
    };

    explicit WaylandDisplay(wl_display* connected)
        : display(connected)
    {}

    [[nodiscard]] bool awaitReadiness(short events, Deadline deadline) const;

    std::unique_ptr<wl_display, Disconnect> display;
};

} // namespace orlimo
