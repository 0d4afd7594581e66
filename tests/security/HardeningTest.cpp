#include "tests/security/HardeningExpectation.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <string>

namespace orlimo {
namespace {

TEST(Hardening, TheProgramHasAllOfIt)
{
    expectHardened(ORLIMO_PROGRAM);
}

/// The options of which a program's file shows no trace, or none of where they were missing.
TEST(Hardening, EverySourceIsCompiledWithAllOfIt)
{
    std::size_t sources = 0;
    for (const std::string& line : linesOf(contentOf(ORLIMO_COMPILE_COMMANDS))) {
        // Tests compile some sources once more.
        if (line.find(" -c ") == std::string::npos || line.find(" -o tests/") != std::string::npos)
        {
            continue;
        }
        ++sources;
        for (const char* option :
             {" -D_GLIBCXX_ASSERTIONS ",
              " -fstack-protector-strong ",
              " -fstack-clash-protection ",
              " -D_FORTIFY_SOURCE=3 "})
        {
            EXPECT_NE(line.find(option), std::string::npos) << option << "is not in\n" << line;
        }
    }
    constexpr std::size_t fewerThanThereAre = 60;
    EXPECT_GT(sources, fewerThanThereAre);
}

} // namespace
} // namespace orlimo
