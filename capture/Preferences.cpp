#include "capture/Preferences.h"

#include <string>

namespace orlimo {

void writePreferenceDefaults(UserDefaults& defaults)
{
    for (const auto& [key, defaultValue] : preference::all) {
        if (!defaults.dictionaryRepresentation().contains(std::string(key))) {
            defaults.setDefault(defaultValue, key);
        }
    }
}

} // namespace orlimo
