#pragma once

#include "tests/fuzz/FuzzTarget.h"

#include <gtest/gtest.h>

#include <string>

namespace orlimo {

/// A finding when the two differ: what was compared, what the program made of it, and what it
/// should be.
template <class Value>
[[nodiscard]] Finding mismatch(const std::string& about, const Value& actual, const Value& expected)
{
    if (actual == expected) {
        return std::nullopt;
    }
    return about + ": " + testing::PrintToString(actual) + " instead of " +
           testing::PrintToString(expected);
}

} // namespace orlimo
