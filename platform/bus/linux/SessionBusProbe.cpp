#include "platform/bus/linux/SessionBusProbe.h"

#include "platform/bus/linux/SocketTimeout.h"
#include "platform/files/UniqueFd.h"
#include "platform/process/EnvironmentVariable.h"

#include <QByteArray>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>

namespace orlimo {

namespace {

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";

/// An address with an unknown transport, so that connecting fails at once. An absent address would
/// mean the socket in the runtime folder.
constexpr const char* disabledAddress = "disabled:";

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

/// The addresses to try in turn, as the D-Bus specification defines them.
std::string sessionBusAddresses()
{
    std::string addresses = environmentVariable(addressVariable);
    if (addresses.empty()) {
        addresses = "unix:path=" + environmentVariable("XDG_RUNTIME_DIR") + "/bus";
    }
    return addresses;
}

/// The address of a local socket.
struct SocketAddress
{
    sockaddr_un name{};
    socklen_t size = 0;
};

/// The local socket of a D-Bus address; absent for other transports.
std::optional<SocketAddress> socketAddress(std::string_view address)
{
    constexpr std::string_view transport = "unix:";
    if (!address.starts_with(transport)) {
        return std::nullopt;
    }
    for (const std::string_view property : split(address.substr(transport.size()), ',')) {
        const bool isAbstract = property.starts_with("abstract=");
        if (!isAbstract && !property.starts_with("path=")) {
            continue;
        }
        const std::string_view escaped = property.substr(property.find('=') + 1);
        QByteArray path = QByteArray::fromPercentEncoding(
            {escaped.data(), static_cast<qsizetype>(escaped.size())});
        if (isAbstract) {
            path.prepend('\0');
        }
        SocketAddress socket;
        socket.name.sun_family = AF_UNIX;
        const auto length = static_cast<std::size_t>(path.size());
        if (length == 0 || length >= sizeof socket.name.sun_path) {
            return std::nullopt;
        }
        std::memcpy(&socket.name.sun_path, path.constData(), length);
        // A path ends with a NUL, an abstract name with its last byte.
        socket.size = static_cast<socklen_t>(
            offsetof(sockaddr_un, sun_path) + length + (isAbstract ? 0U : 1U));
        return socket;
    }
    return std::nullopt;
}

enum class Response {
    received,
    missing,
    notConnected,
};

/// The result of `call`, repeated when a signal interrupts it.
template <typename Call> auto uninterrupted(int socket, Uptime deadline, const Call& call)
{
    decltype(call()) result = -1;
    do {
        setSocketTimeout(socket, deadline, {SO_SNDTIMEO, SO_RCVTIMEO});
        result = call();
    } while (result < 0 && errno == EINTR && currentUptime() < deadline);
    return result;
}

/// Requests the authentication mechanisms of the bus, which are the first thing that it sends.
Response probeBusAt(const SocketAddress& address, Uptime deadline)
{
    const UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int descriptor = socket.get();
    const auto connecting = uninterrupted(descriptor, deadline, [&] {
        const auto* const general = reinterpret_cast<const sockaddr*>(&address.name);
        return ::connect(descriptor, general, address.size);
    });
    if (connecting != 0) {
        // EAGAIN: the backlog of a bus that does not accept is full.
        return errno == EAGAIN ? Response::missing : Response::notConnected;
    }
    constexpr std::string_view authRequest{"\0AUTH\r\n", 7};
    if (::send(descriptor, authRequest.data(), authRequest.size(), MSG_NOSIGNAL) < 0) {
        return Response::notConnected;
    }
    char first = '\0';
    const auto receiving = uninterrupted(
        descriptor, deadline, [&] { return ::recv(descriptor, &first, sizeof first, 0); });
    return receiving < 0 && errno == EAGAIN ? Response::missing : Response::received;
}

/// The response of the first address that accepts a connection.
Response probeSessionBus(std::string_view addresses, Uptime deadline)
{
    for (const std::string_view address : split(addresses, ';')) {
        const auto socket = socketAddress(address);
        if (!socket) {
            break;
        }
        const Response response = probeBusAt(*socket, deadline);
        if (response != Response::notConnected) {
            return response;
        }
    }
    return Response::notConnected;
}

} // namespace

void disableUnresponsiveSessionBus(Uptime deadline)
{
    static std::string responsiveAddresses;
    const std::string addresses = sessionBusAddresses();
    if (addresses == responsiveAddresses) {
        return;
    }
    switch (probeSessionBus(addresses, deadline)) {
    case Response::received:
        responsiveAddresses = addresses;
        break;
    case Response::missing:
        qputenv(addressVariable, disabledAddress);
        std::cerr << "orlimo: the session bus does not answer; running without it\n" << std::flush;
        break;
    case Response::notConnected:
        break;
    }
}

} // namespace orlimo
