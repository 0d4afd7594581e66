#include "tests/fuzz/FuzzerFeedback.h"

#include <array>
#include <bit>

namespace orlimo::feedback {

namespace {

// libFuzzer finds the counters by the name of their section.
__attribute__((section("__libfuzzer_extra_counters"), used)) std::array<std::uint8_t, 8192>
    counters{};

} // namespace

void reportFeature(unsigned feature, std::uint64_t value)
{
    counters[(feature * 509U + value) % counters.size()] = 1;
}

void reportMagnitude(unsigned feature, std::uint64_t quantity)
{
    reportFeature(feature, static_cast<std::uint64_t>(std::bit_width(quantity)));
}

} // namespace orlimo::feedback
