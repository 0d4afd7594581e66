#pragma once

#include <string>

namespace orlimo {

/// How the system calls the language of a catalogue: by the country, where the catalogue goes by
/// the script.
[[nodiscard]] inline std::string localeName(const std::string& catalogueLanguage)
{
    if (catalogueLanguage == "zh_Hans") {
        return "zh_CN";
    }
    return catalogueLanguage == "zh_Hant" ? "zh_TW" : catalogueLanguage;
}

} // namespace orlimo
