#pragma once

#include <string>
#include <vector>

namespace orlimo {

/// What is on the general pasteboard, by the means of the system under test.
namespace contents {

/// The plain text; empty where there is none.
[[nodiscard]] std::string text();

/// The types on offer, by the system's names.
[[nodiscard]] std::vector<std::string> types();

/// The types, by the system's names, that a text which the program puts there is offered as.
[[nodiscard]] std::vector<std::string> typesOfText();

/// Puts something of several types there, as another program would.
void fill();

} // namespace contents
} // namespace orlimo
