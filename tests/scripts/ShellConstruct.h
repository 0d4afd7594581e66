#pragma once

#include <regex>
#include <string>
#include <vector>

namespace orlimo {

/// Something that scripts do on Linux and that a Mac does not know: its bash is 3.2, and its tools
/// are BSD's.
struct ShellConstruct
{
    std::string name;
    std::regex pattern;
    /// A line that has it, and one that looks like it and does not.
    std::string example;
    std::string counterexample;

    [[nodiscard]] bool isIn(const std::string& line) const;
};

[[nodiscard]] const std::vector<ShellConstruct>& constructsOfLinux();

} // namespace orlimo
