#pragma once

#include <cstddef>
#include <vector>

namespace orlimo {

/// Lets a piece of work that makes choices be run once for each way in which they can fall. The
/// work must make the same choices again when they fall the same way:
///
///     ExhaustiveChoice choice;
///     do {
///         work(choice);
///     } while (choice.next());
class ExhaustiveChoice
{
public:
    /// One number from 0 on that is less than `options`, which is not 0.
    [[nodiscard]] std::size_t choose(std::size_t options);

    /// Prepares for the next way. False when there is none that has not been.
    [[nodiscard]] bool next();

private:
    struct Choice
    {
        std::size_t taken;
        std::size_t options;
    };

    std::vector<Choice> choices;
    std::size_t position = 0;
};

} // namespace orlimo
