#include "tests/watch/ExhaustiveChoice.h"

namespace orlimo {

std::size_t ExhaustiveChoice::choose(std::size_t options)
{
    if (position == choices.size()) {
        choices.push_back({.taken = 0, .options = options});
    }
    return choices[position++].taken;
}

bool ExhaustiveChoice::next()
{
    position = 0;
    while (!choices.empty() && choices.back().taken + 1 == choices.back().options) {
        choices.pop_back();
    }
    if (choices.empty()) {
        return false;
    }
    ++choices.back().taken;
    return true;
}

} // namespace orlimo
