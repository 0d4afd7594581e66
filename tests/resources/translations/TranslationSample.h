#pragma once

#include <map>
#include <string>

namespace orlimo {

/// The word "Copy" as the program says it now, and "Cancel" as Qt does.
[[nodiscard]] std::string translationSample();

/// What `translationSample` is for each catalogue.
[[nodiscard]] const std::map<std::string, std::string>& translationSamplesByLanguage();

} // namespace orlimo
