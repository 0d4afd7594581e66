#pragma once

#include "tests/support/TemporaryFolder.h"

#include <optional>

namespace orlimo {

/// The home in which a test program lives: every folder of the user leads into it, and no variable
/// leads to the desktop session of whoever runs the tests. Made before anything else in main(),
/// removed with the object.
class TestSandbox
{
public:
    TestSandbox();

private:
    std::optional<TemporaryFolder> home;
};

} // namespace orlimo
