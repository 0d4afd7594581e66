#pragma once

#include <source_location>
#include <string_view>

namespace orlimo {

/// Ends the process by abort, for a state that the program holds impossible. Before it, one line on
/// standard error names the place and the reason; standard output is left alone.
///
/// May be called on any thread. Never returns, unwinds nothing and runs no exit handler.
[[noreturn]] void fatalStop(
    std::string_view reason,
    const std::source_location& place = std::source_location::current());

} // namespace orlimo
