#include "platform/SystemArguments.h"

#include "app/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using Request = CommandLine::Request;

struct Case
{
    std::vector<const char*> arguments;
    std::size_t systemArguments;
};

void PrintTo(const Case& value, std::ostream* out)
{
    *out << testing::PrintToString(value.arguments);
}

class SystemArguments : public testing::TestWithParam<Case>
{};

TEST_P(SystemArguments, AreCounted)
{
    EXPECT_EQ(systemArgumentCount(GetParam().arguments), GetParam().systemArguments);
}

INSTANTIATE_TEST_SUITE_P(
    OfMacOS,
    SystemArguments,
    testing::Values(
        Case{{}, 0},
        Case{{"-AppleLanguages", "(de)"}, 2},
        Case{{"-AppleLanguages", "(de)", "-AppleLocale", "de_DE"}, 2},
        Case{{"-ApplePersistenceIgnoreState", "YES"}, 2},
        Case{{"-NSDocumentRevisionsDebugMode", "YES", "--side-by-side"}, 2},
        Case{{"-NSTreatUnknownArgumentsAsOpen", "NO"}, 2},
        Case{{"-NSDocumentRevisionsDebugMode"}, 1},
        Case{{"-psn_0_12345"}, 1},
        Case{{"-psn_0_12345", "--side-by-side"}, 1},
        Case{{"-psn"}, 0},
        Case{{"--AppleLanguages", "(de)"}, 0},
        Case{{"AppleLanguages", "(de)"}, 0},
        Case{{"-applelanguages", "(de)"}, 0},
        Case{{"-platform", "-NSQuitAlwaysKeepsWindows"}, 0},
        Case{{"--help"}, 0},
        Case{{""}, 0}));

CommandLine parse(std::vector<const char*> arguments)
{
    arguments.insert(arguments.begin(), "orlimo");
    return CommandLine::parse(static_cast<int>(arguments.size()), arguments.data());
}

TEST(SystemArgumentsOnTheCommandLine, ArePassedOver)
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

TEST(SystemArgumentsOnTheCommandLine, DoNotHideAnUnknownArgument)
{
    const CommandLine commandLine = parse({"-AppleLanguages", "(de)", "--bogus"});
    EXPECT_EQ(commandLine.request, Request::refuse);
    EXPECT_THAT(commandLine.text, testing::HasSubstr("unknown option \"--bogus\""));
}

} // namespace
} // namespace orlimo
