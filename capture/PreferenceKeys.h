#pragma once

#include <array>
#include <string_view>

/// The keys of the user's preferences, all three booleans.
namespace orlimo::preference {

/// React to a change of the message store: read it again and put the code on the pasteboard.
inline constexpr std::string_view capturingEnabled = "capturingEnabled";
/// Accept codes of four digits beside those of five and six.
inline constexpr std::string_view fourDigitInclude = "fourDigitInclude";
/// Where the switch for launch at login stands.
inline constexpr std::string_view loginItemEnabled = "loginItemEnabled";

/// All of them, in the order in which they are read and written.
inline constexpr std::array keys{capturingEnabled, fourDigitInclude, loginItemEnabled};

} // namespace orlimo::preference
