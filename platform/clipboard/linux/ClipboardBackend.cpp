#include "platform/clipboard/linux/ClipboardBackend.h"

#include "platform/clipboard/linux/DataControlClipboard.h"
#include "platform/process/linux/EnvironmentVariable.h"

#include <iostream>
#include <memory>
#include <string_view>
#include <utility>

#include <xcb/xcb.h>

namespace orlimo {

namespace {

using namespace std::chrono_literals;

/// How long a compositor may take where nothing but the clipboard depends on its response.
constexpr std::chrono::milliseconds shortTimeout = 2s;

/// The same where the platform depends on it. A compositor that is slow at login takes seconds, and
/// Qt on Wayland would wait for it without any limit.
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
    // Not null even where it fails, which is for xcb_connection_has_error to tell.
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

/// The name of the platform on which the toolkit ends up: of several with semicolons between them,
/// the first that can be reached. Behind a colon each may have options.
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
    // On the X server Qt does not wait for the compositor, and both ways stay open.
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
    // Compositors that have data control mostly listen to X programs only while one has the focus.
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
