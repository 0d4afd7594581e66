#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orlimo {

/// Four ASCII characters in one number, the first in the highest byte, as events are tagged.
using FourCharacterCode = std::uint32_t;

[[nodiscard]] constexpr FourCharacterCode fourCharacterCode(std::string_view characters)
{
    FourCharacterCode code = 0;
    for (const char character : characters.substr(0, 4)) {
        code = (code << 8U) | static_cast<unsigned char>(character);
    }
    return code;
}

/// The event that the application is handling: how it was launched.
struct LaunchEvent
{
    /// 'oapp': open application.
    FourCharacterCode eventId = 0;
    /// The parameter 'prdt', property data: 'lgit' when the login item mechanism did it.
    std::optional<FourCharacterCode> propertyData;
};

/// The argument by which a login item marks the launch on a system without launch events.
inline constexpr std::string_view launchedAtLoginArgument = "--launched-at-login";

/// The event being handled now. None before launching begins and after it has finished. Main
/// thread.
[[nodiscard]] std::optional<LaunchEvent> currentLaunchEvent();

/// The span in which the launch event is current. Main thread; one at a time.
class LaunchEventHandling
{
public:
    /// `atLogin`: whether the login item started the program, on a system without launch events.
    explicit LaunchEventHandling(bool atLogin);
    LaunchEventHandling(const LaunchEventHandling&) = delete;
    LaunchEventHandling& operator=(const LaunchEventHandling&) = delete;
    ~LaunchEventHandling();
};

} // namespace orlimo
