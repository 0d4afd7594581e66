#include "platform/desktop/SystemArguments.h"

#include "app/CommandLine.h"
#include "platform/services/Session.h"
#include "tests/support/process/EnvironmentChange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

TEST(SystemArguments, AreCounted)
{
    using Arguments = std::vector<const char*>;
    for (const auto& [arguments, count] :
         {std::pair{Arguments{}, 0U},
          std::pair{Arguments{"-AppleLanguages", "(de)"}, 2U},
          std::pair{Arguments{"-AppleLanguages", "(de)", "-AppleLocale", "de_DE"}, 2U},
          std::pair{Arguments{"-NSDocumentRevisionsDebugMode", "YES", "--side-by-side"}, 2U},
          std::pair{Arguments{"-NSDocumentRevisionsDebugMode"}, 1U},
          std::pair{Arguments{"-psn_0_12345", "--side-by-side"}, 1U},
          std::pair{Arguments{"-psn"}, 0U},
          std::pair{Arguments{"--AppleLanguages", "(de)"}, 0U},
          std::pair{Arguments{"-applelanguages", "(de)"}, 0U},
          std::pair{Arguments{"-platform", "-NSQuitAlwaysKeepsWindows"}, 0U},
          std::pair{Arguments{""}, 0U}})
    {
        EXPECT_EQ(systemArgumentCount(arguments), count) << testing::PrintToString(arguments);
    }
}

TEST(SystemArguments, AreIgnoredOnTheCommandLine)
{
    const std::array arguments{
        "orlimo", "-AppleLanguages", "(de)", "--launched-at-login", "-ApplePersistence", "--help"};
    const auto commandLine = CommandLine::parse(6, arguments.data(), systemArgumentCount);
    EXPECT_EQ(commandLine.request, CommandLine::Request::runLaunchedAtLogin) << commandLine.text;
}

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
