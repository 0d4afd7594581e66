#pragma once

#include <map>
#include <string>

namespace orlimo {

/// The word "Copy" as the program says it now, and "Cancel" as Qt does.
[[nodiscard]] std::string wordsSpoken();

/// What `wordsSpoken` is for each catalogue.
[[nodiscard]] const std::map<std::string, std::string>& wordsOfEachLanguage();

} // namespace orlimo
