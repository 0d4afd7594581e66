#pragma once

#include "platform/preferences/UserDefaults.h"

#include <array>
#include <string_view>

namespace orlimo {

/// The user's preferences, all of them booleans.
namespace preference {

/// Whether a change of the message store is captured: read it again and copy the code.
inline constexpr std::string_view capturingEnabled = "capturingEnabled";
/// Whether codes of four digits are accepted beside those of five and six.
inline constexpr std::string_view fourDigitInclude = "fourDigitInclude";
/// The position of the switch for launch at login.
inline constexpr std::string_view loginItemEnabled = "loginItemEnabled";

struct Preference
{
    std::string_view key;
    bool defaultValue;
};

/// All of them, in the order in which they are read and written.
inline constexpr std::array all{
    Preference{capturingEnabled, true},
    Preference{fourDigitInclude, true},
    Preference{loginItemEnabled, true},
};

} // namespace preference

/// Stores the default of each preference whose key `defaults` does not hold; stored values are
/// kept. After the first launch the store holds every key. Main thread.
void writePreferenceDefaults(UserDefaults& defaults);

} // namespace orlimo
