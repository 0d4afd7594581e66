#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include <wayland-client-core.h>

namespace orlimo {

/// A connection to a Wayland compositor on which no call blocks beyond its deadline. Used on one
/// thread; must outlive the objects created on it.
class WaylandDisplay
{
public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// The state of the requests written so far.
    enum class Output {
        sent,    ///< the compositor has received all of them
        waiting, ///< the compositor does not read more at present
        lost,    ///< the connection has ended
    };

    /// The result of a round trip.
    enum class Response {
        received,
        timedOut, ///< none before the deadline
        lost,     ///< the connection has ended
    };

    /// Connects to the compositor `name`, a socket in the user's runtime folder unless it is an
    /// absolute path; an empty name means the session's own (WAYLAND_DISPLAY). Absent on failure,
    /// with the reason in `error`: `resource_unavailable_try_again` if a compositor is listening
    /// but does not accept the connection before `deadline`, which may already have passed.
    [[nodiscard]] static std::optional<WaylandDisplay>
    connect(const std::string& name, Deadline deadline, std::error_code& error);

    [[nodiscard]] wl_display* get() const { return display.get(); }

    /// The display object, from which others are created.
    [[nodiscard]] wl_proxy* proxy() const;

    /// Readable when there are events to dispatch. Owned by the connection.
    [[nodiscard]] int descriptor() const { return wl_display_get_fd(display.get()); }

    /// Sends as many of the written requests as possible without blocking.
    [[nodiscard]] Output flush();

    /// Sends all written requests. False if the connection has ended or the compositor does not
    /// read them before `deadline`.
    [[nodiscard]] bool flush(Deadline deadline);

    /// Reads and delivers the events that have arrived, without blocking. False if the connection
    /// has ended.
    [[nodiscard]] bool dispatch();

    /// Delivers events until the compositor has handled every request written so far, or until
    /// `deadline`.
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
