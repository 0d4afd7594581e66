#include "app/CommandLine.h"
#include "platform/desktop/SystemArguments.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace orlimo {
namespace {

TEST(CommandLineOnLinux, RefusesTheArgumentsOfAnotherSystem)
{
    for (const char* argument :
         {"-AppleLanguages", "-NSDocumentRevisionsDebugMode", "-psn_0_12345"}) {
        const std::array arguments{"orlimo", argument, "YES"};
        const auto commandLine = CommandLine::parse(3, arguments.data(), systemArgumentCount);
        EXPECT_EQ(commandLine.request, CommandLine::Request::refuse);
        EXPECT_EQ(
            commandLine.text,
            "orlimo: unknown option \"" + std::string(argument) + "\"; see orlimo --help\n");
    }
}

} // namespace
} // namespace orlimo
