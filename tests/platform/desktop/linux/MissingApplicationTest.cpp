#include "platform/desktop/SharedApplication.h"
#include "tests/support/FatalStopExpectation.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// These tests have an application object, but not one that can show windows.
TEST(MissingApplication, StopsTheProgram)
{
    expectFatalStop(
        [] { (void)sharedApplication(); },
        {},
        {"platform/desktop/linux/QtSharedApplication.cpp", "there is no application object"});
}

} // namespace
} // namespace orlimo
