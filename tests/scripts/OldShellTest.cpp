#include "tests/packaging/CommandResult.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <sstream>

namespace orlimo {
namespace {

const std::filesystem::path tree = ORLIMO_SOURCES;

/// Something that scripts do on Linux and that a Mac does not know.
struct Construct
{
    std::string name;
    std::regex pattern;
    std::string example;
    std::string counterexample;

    [[nodiscard]] bool isIn(const std::string& line) const
    {
        static const std::regex comment(R"(^\s*#)");
        return !std::regex_search(line, comment) && std::regex_search(line, pattern);
    }
};

std::vector<Construct> constructsOfLinux()
{
    std::vector<Construct> constructs;
    for (const std::string& line : linesOf(contentOf(tree / "tests/scripts/linux-constructs"))) {
        Construct construct;
        std::istringstream fields(line);
        std::getline(fields, construct.name, '\t');
        std::getline(fields, construct.example, '\t');
        if (std::getline(fields, construct.counterexample)) {
            construct.pattern = construct.name;
            constructs.push_back(construct);
        }
    }
    return constructs;
}

/// Every script that a Mac runs.
std::vector<std::string> scriptsForMac()
{
    std::vector<std::string> scripts;
    for (const char* const name :
         {".ci/run",
          "packaging/install-dependencies",
          "packaging/toolchain-environment",
          "run",
          "test"})
    {
        scripts.push_back((tree / name).string());
    }
    for (const auto& entry : std::filesystem::directory_iterator(tree / "packaging/macos")) {
        if (contentOf(entry.path()).starts_with("#!/usr/bin/env bash\n")) {
            scripts.push_back(entry.path().string());
        }
    }
    return scripts;
}

TEST(OldShell, EveryConstructIsFoundWhereItIsAndOnlyThere)
{
    EXPECT_GE(constructsOfLinux().size(), 25U);
    for (const Construct& construct : constructsOfLinux()) {
        EXPECT_TRUE(construct.isIn(construct.example)) << construct.name;
        EXPECT_FALSE(construct.isIn(construct.counterexample)) << construct.name;
        EXPECT_FALSE(construct.isIn("    # " + construct.example)) << construct.name;
    }
}

TEST(OldShell, NoScriptForAMacUsesWhatItDoesNotKnow)
{
    const auto constructs = constructsOfLinux();
    for (const auto& script : scriptsForMac()) {
        for (const std::string& line : linesOf(contentOf(script))) {
            for (const Construct& construct : constructs) {
                EXPECT_FALSE(construct.isIn(line)) << script << ": " << line;
            }
        }
    }
}

TEST(OldShell, EveryScriptForAMacIsSound)
{
    auto scripts = scriptsForMac();
    EXPECT_GE(scripts.size(), 10U);
    // What only another script or a trap calls is none of its business.
    scripts.insert(
        scripts.begin(), {"shellcheck", "-e", "SC2317", "-s", "bash", "-x", "-P", tree.string()});
    const auto result = CommandResult::of("/usr/bin/env", {.arguments = scripts});
    EXPECT_EQ(result.status, 0) << result.text();
}

} // namespace
} // namespace orlimo
