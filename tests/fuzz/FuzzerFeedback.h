#pragma once

#include <cstdint>

namespace orlimo::feedback {

/// Tells the fuzzer that the present input has shown `value` of `feature`, so that it keeps one
/// input for each that it has not seen before: for libraries that are not built for the fuzzer.
/// Without a fuzzer it does nothing that could be noticed.
void reportFeature(unsigned feature, std::uint64_t value);

/// The same for a quantity, of which only the order of magnitude is of interest.
void reportMagnitude(unsigned feature, std::uint64_t quantity);

} // namespace orlimo::feedback
