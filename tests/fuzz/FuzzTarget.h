#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace orlimo {

/// What is wrong with the program on one input; absent if nothing is.
using Finding = std::optional<std::string>;

/// Feeds `input`, any bytes, to one part of the program and checks the outcome. Each target is a
/// program of its own that defines this function once; it is run by the fuzzer on new inputs or by
/// a test on the kept ones. One call at a time; no call affects the finding of another. Needs a
/// test sandbox.
[[nodiscard]] Finding checkInput(std::string_view input);

/// A finding if the two differ: what was compared, its value, and the expected value.
template <class Value>
[[nodiscard]] Finding mismatch(const std::string& about, const Value& actual, const Value& expected)
{
    if (actual == expected) {
        return std::nullopt;
    }
    return about + ": " + testing::PrintToString(actual) + " instead of " +
           testing::PrintToString(expected);
}

/// The first that is one.
[[nodiscard]] inline Finding firstOf(std::initializer_list<Finding> findings)
{
    for (const Finding& finding : findings) {
        if (finding) {
            return finding;
        }
    }
    return std::nullopt;
}

} // namespace orlimo
