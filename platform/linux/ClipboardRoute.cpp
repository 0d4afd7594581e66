#include "platform/linux/ClipboardRoute.h"

#include "platform/linux/DataControlClipboard.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

namespace orlimo {

namespace {

// NOLINTBEGIN(concurrency-mt-unsafe): asked before there is a second thread
std::string_view environmentVariable(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}
// NOLINTEND(concurrency-mt-unsafe)

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

/// The name of the first of the platforms, without what is asked of it: "xcb" of "xcb:opt;wayland".
std::string_view nameOf(std::string_view platform)
{
    return platform.substr(0, platform.find_first_of(":;"));
}

ClipboardRoute routeOfOurChoice(const DesktopFacts& facts)
{
    if (!facts.isWaylandSession) {
        return ClipboardRoute::toolkit;
    }
    if (facts.offersDataControl()) {
        return ClipboardRoute::dataControl;
    }
    return facts.hasXServer() ? ClipboardRoute::xServer : ClipboardRoute::focusedOnly;
}

std::optional<ClipboardRoute>& settledRoute()
{
    static std::optional<ClipboardRoute> route;
    return route;
}

} // namespace

DesktopFacts desktopFacts(const std::optional<std::string>& platformArgument)
{
    const std::string_view inEnvironment = environmentVariable("QT_QPA_PLATFORM");
    auto chosenPlatform = platformArgument;
    if (!chosenPlatform && !inEnvironment.empty()) {
        chosenPlatform = inEnvironment;
    }
    return {
        .chosenPlatform = std::move(chosenPlatform),
        .isWaylandSession = isOnWayland(),
        .offersDataControl = [] { return DataControlClipboard::isOffered(); },
        .hasXServer = canReachXServer,
    };
}

ClipboardRoute bestClipboardRoute(const DesktopFacts& facts)
{
    if (!facts.chosenPlatform) {
        return routeOfOurChoice(facts);
    }
    const std::string_view platform = nameOf(*facts.chosenPlatform);
    if (platform.starts_with("wayland")) {
        return facts.offersDataControl() ? ClipboardRoute::dataControl
                                         : ClipboardRoute::focusedOnly;
    }
    // Compositors that have data control mostly listen to X programs only while one has the focus.
    const bool isBesideCompositor = platform == "xcb" && facts.isWaylandSession;
    return isBesideCompositor && facts.offersDataControl() ? ClipboardRoute::dataControl
                                                           : ClipboardRoute::toolkit;
}

void takeClipboardRoute(ClipboardRoute route)
{
    settledRoute() = route;
}

ClipboardRoute takenClipboardRoute()
{
    return settledRoute().value_or(ClipboardRoute::toolkit);
}

} // namespace orlimo
