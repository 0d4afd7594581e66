#include "platform/clipboard/linux/ClipboardBackend.h"

#include "platform/process/EnvironmentVariable.h"

#include <iostream>
#include <memory>
#include <string_view>
#include <utility>

#include <xcb/xcb.h>

namespace orlimo {

namespace {

using namespace std::chrono_literals;

/// How long to wait for a compositor if only the clipboard depends on its response.
constexpr std::chrono::milliseconds shortTimeout = 2s;

/// The same if the choice of Qt's platform depends on it. At login a slow compositor takes seconds,
/// and Qt on Wayland would wait for it without any limit.
constexpr std::chrono::milliseconds longTimeout = 30s;

bool isOnWayland()
{
    return !environmentVariable("WAYLAND_DISPLAY").empty() ||
           environmentVariable("XDG_SESSION_TYPE") == "wayland";
}

bool canReachXServer()
{
    if (environmentVariable("DISPLAY").empty()) {
        return false;
    }
    // Never null: xcb_connection_has_error reports a failure.
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    return xcb_connection_has_error(connection.get()) == 0;
}

bool canReach(std::string_view platform, const SessionCapabilities& capabilities)
{
    if (platform.starts_with("wayland")) {
        return capabilities.isWaylandSession;
    }
    return platform != "xcb" || capabilities.hasXServer();
}

/// The name of the platform that Qt ends up with: the first reachable one in a list separated by
/// semicolons, in which each name may be followed by a colon and options.
std::string_view chosenPlatform(std::string_view platforms, const SessionCapabilities& capabilities)
{
    const auto end = platforms.find(';');
    const std::string_view first = platforms.substr(0, end);
    const std::string_view name = first.substr(0, first.find(':'));
    return end == std::string_view::npos || canReach(name, capabilities)
               ? name
               : chosenPlatform(platforms.substr(end + 1), capabilities);
}

ClipboardBackend defaultBackend(const SessionCapabilities& capabilities)
{
    if (!capabilities.isWaylandSession) {
        return ClipboardBackend::qt;
    }
    const auto dataControl = capabilities.dataControl(longTimeout);
    if (dataControl == DataControlAvailability::notOffered) {
        return capabilities.hasXServer() ? ClipboardBackend::xServer
                                         : ClipboardBackend::focusedOnly;
    }
    // On the X server Qt does not wait for the compositor, and both backends stay possible.
    const bool isUnknown = dataControl == DataControlAvailability::unknown;
    return isUnknown && capabilities.hasXServer() ? ClipboardBackend::dataControlOrXServer
                                                  : ClipboardBackend::dataControl;
}

bool mayOfferDataControl(const SessionCapabilities& capabilities)
{
    return capabilities.dataControl(shortTimeout) != DataControlAvailability::notOffered;
}

} // namespace

SessionCapabilities sessionCapabilities(const std::optional<std::string>& platformArgument)
{
    const std::string inEnvironment = environmentVariable("QT_QPA_PLATFORM");
    auto platform = platformArgument;
    if (!platform && !inEnvironment.empty()) {
        platform = inEnvironment;
    }
    return {
        .chosenPlatform = std::move(platform),
        .isWaylandSession = isOnWayland(),
        .dataControl = [](auto limit) { return DataControlClipboard::availability(limit); },
        .hasXServer = canReachXServer,
    };
}

ClipboardBackend bestClipboardBackend(const SessionCapabilities& capabilities)
{
    if (!capabilities.chosenPlatform) {
        return defaultBackend(capabilities);
    }
    const std::string_view platform = chosenPlatform(*capabilities.chosenPlatform, capabilities);
    if (platform.starts_with("wayland")) {
        return mayOfferDataControl(capabilities) ? ClipboardBackend::dataControl
                                                 : ClipboardBackend::focusedOnly;
    }
    // Most compositors with data control accept the clipboard of an X client only while it has the
    // focus.
    const bool isOnXWayland = platform == "xcb" && capabilities.isWaylandSession;
    return isOnXWayland && mayOfferDataControl(capabilities) ? ClipboardBackend::dataControl
                                                             : ClipboardBackend::qt;
}

void warnThatClipboardNeedsFocus()
{
    std::cerr << "orlimo: this session lets no program without a focused window set the "
                 "clipboard; the Copy button still does\n"
              << std::flush;
}

} // namespace orlimo
