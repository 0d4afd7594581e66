#include "platform/ToolkitArguments.h"
#include "tests/support/EnvironmentChange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

namespace orlimo {
namespace {

constexpr const char* transform = "QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM";

TEST(AppKitToolkitArguments, AreTheProgramsOwn)
{
    const EnvironmentChange unset(transform, std::nullopt);
    const std::array<const char*, 3> given{"orlimo", "-style", "fusion"};
    ToolkitArguments arguments(static_cast<int>(given.size()), given.data());
    ASSERT_EQ(arguments.count(), 3);
    EXPECT_EQ(arguments.values()[3], nullptr);
    const std::vector<std::string> taken(arguments.values(), arguments.values() + 3);
    EXPECT_THAT(taken, testing::ElementsAreArray(given));
}

TEST(AppKitToolkitArguments, MayBeNone)
{
    const EnvironmentChange unset(transform, std::nullopt);
    const std::array<const char*, 1> given{nullptr};
    ToolkitArguments arguments(0, given.data());
    EXPECT_EQ(arguments.count(), 0);
    EXPECT_EQ(arguments.values()[0], nullptr);
}

TEST(AppKitToolkitArguments, KeepTheToolkitFromTakingTheFocusAtTheStart)
{
    const EnvironmentChange unset(transform, std::nullopt);
    const std::array<const char*, 1> given{"orlimo"};
    const ToolkitArguments arguments(1, given.data());
    // Set means that the value is not empty.
    EXPECT_STREQ(std::getenv(transform), "1");
}

} // namespace
} // namespace orlimo
