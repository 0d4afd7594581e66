#pragma once

#include "platform/preferences/UserDefaults.h"

namespace orlimo {

/// Stores true under each preference key that `defaults` does not hold; what it holds stays. After
/// the first launch the store holds all of them. Main thread.
void writePreferenceDefaults(UserDefaults& defaults);

} // namespace orlimo
