#include "capture/PreferenceDefaults.h"

#include "capture/PreferenceKeys.h"

#include <string>

namespace orlimo {

void writePreferenceDefaults(UserDefaults& defaults)
{
    for (const auto key : preference::keys) {
        if (!defaults.dictionaryRepresentation().contains(std::string(key))) {
            defaults.setDefault(true, key);
        }
    }
}

} // namespace orlimo
