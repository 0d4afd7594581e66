#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

/// Where and why the program is to stop fatally.
struct ExpectedStop
{
    /// The source file that the message names, as it is called in the tree.
    std::string_view file;
    /// The text after the file and line.
    std::string_view reason;
};

/// Expects that `work`, run in a process of its own, logs exactly `lines`, then says where and why
/// it stops, and is ended by SIGABRT.
void expectFatalStop(
    const std::function<void()>& work,
    const std::vector<std::string>& lines,
    const ExpectedStop& stop);

} // namespace orlimo
