#include "platform/desktop/QtArguments.h"

#include "platform/bus/linux/SessionBusProbe.h"
#include "platform/clipboard/linux/ClipboardBackend.h"
#include "platform/threads/UptimeClock.h"

#include <algorithm>
#include <chrono>
#include <optional>

namespace orlimo {

namespace {

/// How long the session bus may take to respond before the program runs without it.
constexpr std::chrono::milliseconds busProbeTimeout{1500};

/// The platform named by the arguments: the last one, as in Qt.
std::optional<std::string> platformArgument(const std::vector<std::string>& arguments)
{
    const auto isPlatformOption = [](const std::string& argument) {
        return argument == "-platform" || argument == "--platform";
    };
    const auto option = std::find_if(arguments.rbegin(), arguments.rend(), isPlatformOption);
    return option == arguments.rend() || option == arguments.rbegin()
               ? std::nullopt
               : std::optional(*std::prev(option));
}

} // namespace

QtArguments::QtArguments(int argc, const char* const* argv)
    : texts(argv, argv + argc)
{
    // The application object connects to the bus.
    disableUnresponsiveSessionBus(currentUptime() + busProbeTimeout);
    const ClipboardBackend backend =
        bestClipboardBackend(sessionCapabilities(platformArgument(texts)));
    selectClipboardBackend(backend);
    if (backend == ClipboardBackend::xServer || backend == ClipboardBackend::dataControlOrXServer) {
        // Not through the environment: child processes choose their own platform.
        texts.insert(texts.end(), {"-platform", "xcb;wayland"});
    } else if (backend == ClipboardBackend::focusedOnly) {
        warnThatClipboardNeedsFocus();
    }
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    number = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);
}

} // namespace orlimo
