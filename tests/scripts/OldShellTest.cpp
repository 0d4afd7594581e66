#include "tests/packaging/CommandResult.h"
#include "tests/scripts/ShellConstruct.h"
#include "tests/support/OutputCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace orlimo {
namespace {

using testing::Contains;
using testing::SizeIs;

const std::filesystem::path tree = ORLIMO_SOURCES;

bool isShellScript(const std::filesystem::path& file)
{
    const std::string text = contentOf(file);
    return text.starts_with("#!/usr/bin/env bash\n") || text.starts_with("#!/bin/sh\n") ||
           text.starts_with("#!/bin/bash\n");
}

/// Every script that a Mac runs.
std::vector<std::filesystem::path> scriptsForMac()
{
    std::vector<std::filesystem::path> scripts{
        tree / ".ci/run",
        tree / "packaging/install-dependencies",
        tree / "packaging/toolchain-environment",
        tree / "run",
        tree / "test",
    };
    const auto folder = tree / "packaging/macos";
    if (std::filesystem::is_directory(folder)) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.is_regular_file() && isShellScript(entry.path())) {
                scripts.push_back(entry.path());
            }
        }
    }
    return scripts;
}

TEST(OldShell, EveryConstructIsFoundWhereItIsAndOnlyThere)
{
    for (const ShellConstruct& construct : constructsOfLinux()) {
        EXPECT_TRUE(construct.isIn(construct.example)) << construct.name;
        EXPECT_FALSE(construct.isIn(construct.counterexample)) << construct.name;
    }
}

TEST(OldShell, CommentsAreNotLookedAt)
{
    for (const ShellConstruct& construct : constructsOfLinux()) {
        EXPECT_FALSE(construct.isIn("    # " + construct.example)) << construct.name;
    }
}

TEST(OldShell, NoScriptForAMacUsesWhatItDoesNotKnow)
{
    for (const auto& script : scriptsForMac()) {
        int number = 0;
        for (const std::string& line : linesOf(contentOf(script))) {
            ++number;
            for (const ShellConstruct& construct : constructsOfLinux()) {
                EXPECT_FALSE(construct.isIn(line))
                    << script << ":" << number << ": " << construct.name << ": " << line;
            }
        }
    }
}

TEST(OldShell, EveryScriptForAMacIsWellFormed)
{
    for (const auto& script : scriptsForMac()) {
        const auto result = CommandResult::of("/bin/bash", {.arguments = {"-n", script}});
        EXPECT_EQ(result.status, 0) << script << ": " << result.text();
    }
}

} // namespace
} // namespace orlimo
