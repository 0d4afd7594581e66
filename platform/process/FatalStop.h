#pragma once

#include <string_view>

namespace orlimo {

/// Ends the process by abort, for a state that the program holds impossible. Before it, one line on
/// standard error names the place and the reason; standard output is left alone.
///
/// May be called on any thread. Never returns, unwinds nothing and runs no exit handler. `file` and
/// `line` are the caller's own place.
[[noreturn]] void fatalStop(
    std::string_view reason, const char* file = __builtin_FILE(), int line = __builtin_LINE());

} // namespace orlimo
