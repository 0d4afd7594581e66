#include "platform/display/linux/WaylandDisplay.h"

#include "platform/bus/linux/SocketTimeout.h"
#include "platform/display/linux/WaylandRoundTrip.h"
#include "platform/files/UniqueFd.h"
#include "platform/process/EnvironmentVariable.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace orlimo {

namespace {

using std::chrono::milliseconds;

/// The path of the compositor's socket; empty if the environment does not give one.
std::string socketPath(std::string name)
{
    if (name.empty()) {
        name = environmentVariable("WAYLAND_DISPLAY");
    }
    const std::filesystem::path relative = name.empty() ? "wayland-0" : name;
    const std::filesystem::path folder = environmentVariable("XDG_RUNTIME_DIR");
    const auto path = folder / relative; // an absolute path stays what it is
    return path.is_absolute() ? path.string() : std::string();
}

/// The time left until `deadline`, rounded up; zero once it has passed.
template <typename Duration> Duration timeLeft(WaylandDisplay::Deadline deadline)
{
    const auto left = deadline - std::chrono::steady_clock::now();
    return std::max(Duration::zero(), std::chrono::ceil<Duration>(left));
}

/// A connection to the socket at `path`; none on failure, with errno set: EAGAIN if it is not
/// accepted before `deadline`.
UniqueFd connectedSocket(const std::string& path, WaylandDisplay::Deadline deadline)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        errno = path.empty() ? ENOENT : ENAMETOOLONG;
        return {};
    }
    std::memcpy(&address.sun_path, path.c_str(), path.size() + 1);
    UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket) {
        return {};
    }
    // connect() blocks while the backlog of a compositor that does not accept is full.
    setSocketTimeout(socket.get(), deadline, {SO_SNDTIMEO});
    const auto* const general = reinterpret_cast<const sockaddr*>(&address);
    int result = 0;
    do {
        result = ::connect(socket.get(), general, sizeof address);
    } while (result < 0 && errno == EINTR && std::chrono::steady_clock::now() < deadline);
    if (result < 0 && errno == EINTR) {
        errno = EAGAIN;
    }
    // Closing the socket leaves errno as it is.
    return result == 0 ? std::move(socket) : UniqueFd();
}

} // namespace

std::optional<WaylandDisplay>
WaylandDisplay::connect(const std::string& name, Deadline deadline, std::error_code& error)
{
    // Not left to the library: it would wait without a limit, and would use up the socket in
    // WAYLAND_SOCKET, which is meant for Qt.
    UniqueFd socket = connectedSocket(socketPath(name), deadline);
    wl_display* const connected = socket ? wl_display_connect_to_fd(socket.release()) : nullptr;
    if (connected == nullptr) {
        error = std::error_code(errno, std::generic_category());
        return std::nullopt;
    }
    return WaylandDisplay(connected);
}

wl_proxy* WaylandDisplay::proxy() const
{
    // Each of the library's objects begins with its proxy; its own functions rely on that too.
    return reinterpret_cast<wl_proxy*>(display.get());
}

WaylandDisplay::Output WaylandDisplay::flush()
{
    if (wl_display_flush(display.get()) >= 0) {
        return Output::sent;
    }
    return errno == EAGAIN ? Output::waiting : Output::lost;
}

bool WaylandDisplay::flush(Deadline deadline)
{
    Output output = flush();
    while (output == Output::waiting && awaitReadiness(POLLOUT, deadline)) {
        output = flush();
    }
    return output == Output::sent;
}

bool WaylandDisplay::dispatch()
{
    while (wl_display_prepare_read(display.get()) != 0) {
        if (wl_display_dispatch_pending(display.get()) < 0) {
            return false;
        }
    }
    return wl_display_read_events(display.get()) == 0 &&
           wl_display_dispatch_pending(display.get()) >= 0;
}

WaylandDisplay::Response WaylandDisplay::roundTrip(Deadline deadline)
{
    const WaylandRoundTrip request(display.get());
    // The limit also applies to a compositor that keeps sending other events.
    const auto hasTime = [&] { return std::chrono::steady_clock::now() < deadline; };
    while (!request.isComplete() && hasTime()) {
        if (!flush(deadline) || !awaitReadiness(POLLIN, deadline) || !dispatch()) {
            return hasTime() ? Response::lost : Response::timedOut;
        }
    }
    return request.isComplete() ? Response::received : Response::timedOut;
}

bool WaylandDisplay::awaitReadiness(short events, Deadline deadline) const
{
    pollfd awaited{descriptor(), events, 0};
    int ready = 0;
    do {
        ready = ::poll(&awaited, 1, static_cast<int>(timeLeft<milliseconds>(deadline).count()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

} // namespace orlimo
