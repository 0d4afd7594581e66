#include "platform/services/Session.h"

#include "tests/support/process/EnvironmentChange.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

namespace orlimo {
namespace {

TEST(QtArguments, KeepQtFromTakingTheFocus)
{
    constexpr const char* transform = "QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM";
    const EnvironmentChange unset(transform, std::nullopt);
    const std::array<const char*, 2> given{"orlimo", "-style"};
    Session session = detectSession(static_cast<int>(given.size()), given.data());
    QtArguments& arguments = session.arguments;
    ASSERT_EQ(arguments.count(), 2);
    EXPECT_STREQ(arguments.values()[1], "-style");
    EXPECT_EQ(arguments.values()[2], nullptr);
    // Set means that the value is not empty.
    EXPECT_STREQ(std::getenv(transform), "1");
}

} // namespace
} // namespace orlimo
