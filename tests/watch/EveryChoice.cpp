#include "tests/watch/EveryChoice.h"

namespace orlimo {

std::size_t EveryChoice::among(std::size_t options)
{
    if (position == choices.size()) {
        choices.push_back({.taken = 0, .options = options});
    }
    return choices[position++].taken;
}

bool EveryChoice::next()
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
