#include "platform/services/Session.h"

#include "platform/bus/linux/SessionBusProbe.h"
#include "platform/clipboard/linux/ClipboardBackend.h"
#include "platform/clipboard/linux/GeneralPasteboard.h"
#include "platform/threads/UptimeClock.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

namespace {

/// How long the session bus may take to respond before the program runs without it.
constexpr std::chrono::milliseconds busProbeTimeout{1500};

/// The platform that the arguments name: the last one, as Qt takes it.
std::optional<std::string> platformArgument(std::span<const char* const> arguments)
{
    const auto isPlatformOption = [](std::string_view argument) {
        return argument == "-platform" || argument == "--platform";
    };
    const auto option = std::find_if(arguments.rbegin(), arguments.rend(), isPlatformOption);
    return option == arguments.rend() || option == arguments.rbegin()
               ? std::nullopt
               : std::optional<std::string>(*std::prev(option));
}

/// Not by the environment: what the program starts is to choose for itself.
std::vector<std::string> additionalArguments(ClipboardBackend backend)
{
    const bool needsXServer =
        backend == ClipboardBackend::xServer || backend == ClipboardBackend::dataControlOrXServer;
    return needsXServer ? std::vector<std::string>{"-platform", "xcb;wayland"}
                        : std::vector<std::string>();
}

} // namespace

Session detectSession(int argc, const char* const* argv)
{
    // The application object connects to the bus.
    disableUnresponsiveSessionBus(currentUptime() + busProbeTimeout);
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    const ClipboardBackend backend =
        bestClipboardBackend(sessionCapabilities(platformArgument(arguments)));
    if (backend == ClipboardBackend::focusedOnly) {
        warnThatClipboardNeedsFocus();
    }
    return {
        .arguments = QtArguments(argc, argv, additionalArguments(backend)),
        .makePasteboard = [backend] { return makeGeneralPasteboard(backend); }};
}

} // namespace orlimo
