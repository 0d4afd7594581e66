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

/// The system's name for plain text.
[[nodiscard]] std::string typeOfText();

/// Puts something of several types there, as another program would.
void fill();

} // namespace contents
} // namespace orlimo
