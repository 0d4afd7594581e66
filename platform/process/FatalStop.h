#pragma once

#include <string_view>

namespace orlimo {

/// Aborts the process in a state that is held impossible, after one line on standard error with the
/// location and the reason.
///
/// Any thread. Unwinds nothing, runs no exit handler and does not flush standard output. `file` and
/// `line` are the caller's location.
[[noreturn]] void fatalStop(
    std::string_view reason, const char* file = __builtin_FILE(), int line = __builtin_LINE());

} // namespace orlimo
