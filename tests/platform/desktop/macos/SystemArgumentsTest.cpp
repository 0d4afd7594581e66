#include "platform/desktop/SystemArguments.h"

#include "app/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace orlimo {
namespace {

using Request = CommandLine::Request;

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

CommandLine parse(std::vector<const char*> arguments)
{
    arguments.insert(arguments.begin(), "orlimo");
    return CommandLine::parse(
        static_cast<int>(arguments.size()), arguments.data(), systemArgumentCount);
}

TEST(SystemArgumentsOnTheCommandLine, AreIgnored)
{
    for (const auto& arguments : std::vector<std::vector<const char*>>{
             {"-AppleLanguages", "(de)", "--launched-at-login"},
             {"-NSDocumentRevisionsDebugMode", "YES", "--launched-at-login"},
             {"--launched-at-login", "-NSDocumentRevisionsDebugMode", "--help"},
             {"-psn_0_12345", "--launched-at-login", "-ApplePersistenceIgnoreState"}})
    {
        const CommandLine commandLine = parse(arguments);
        EXPECT_EQ(commandLine.request, Request::runLaunchedAtLogin) << commandLine.text;
    }
}

} // namespace
} // namespace orlimo
