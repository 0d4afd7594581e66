#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orlimo {

/// What is wrong with the program on one input, for whoever has to look into it; absent when
/// nothing is.
using Finding = std::optional<std::string>;

/// Feeds `input`, any bytes, to one part of the program and judges what it makes of them. Each
/// target is a program of its own: it defines this function once, and is run by the fuzzer on ever
/// new inputs or by a test on the inputs that are kept. One call at a time; what a call leaves
/// behind does not change the next one's judgement. Needs a test sandbox.
[[nodiscard]] Finding checkInput(std::string_view input);

} // namespace orlimo
