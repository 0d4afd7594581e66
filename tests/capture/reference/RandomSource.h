#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace orlimo {

/// Pseudo-random choices, the same in each run with the same seed.
class RandomSource
{
public:
    explicit RandomSource(std::uint64_t seed)
        : generator(seed)
    {}

    /// A number below `limit`.
    [[nodiscard]] std::size_t below(std::size_t limit) { return generator() % limit; }

    /// True once in `times`.
    [[nodiscard]] bool once(std::size_t times) { return below(times) == 0; }

    [[nodiscard]] const std::string& oneOf(const std::vector<std::string>& choices)
    {
        return choices[below(choices.size())];
    }

private:
    std::mt19937_64 generator;
};

/// `lines` as they are logged, for comparison with a log whose lines hold line breaks.
[[nodiscard]] inline std::string joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

} // namespace orlimo
