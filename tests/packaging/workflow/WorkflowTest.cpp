#include "tests/packaging/CommandResult.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>
#include <sstream>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::filesystem::path sources = ORLIMO_SOURCES;
const std::filesystem::path workflow = sources / ".github/workflows/build.yml";

CommandResult command(std::vector<std::string> words)
{
    return CommandResult::of("/usr/bin/env", {.arguments = std::move(words)});
}

CommandResult check(const std::filesystem::path& file)
{
    const auto folder = sources / "tests/packaging/workflow";
    return command(
        {(folder / "check-workflow").string(), (folder / "schema.json").string(), file.string()});
}

/// The jobs' commands, each after its job's name.
std::vector<std::pair<std::string, std::string>> commands()
{
    std::vector<std::pair<std::string, std::string>> found;
    std::istringstream lines(check(workflow).output);
    for (std::string line; std::getline(lines, line);) {
        const auto tab = line.find('\t');
        found.emplace_back(line.substr(0, tab), line.substr(tab + 1));
    }
    return found;
}

TEST(Workflow, IsWellFormed)
{
    const auto lint = command(
        {"yamllint",
         "--strict",
         "--config-data",
         "{extends: default, rules: {line-length: {max: 120}}}",
         workflow.string()});
    EXPECT_EQ(lint.status, 0) << lint.text();
    const auto result = check(workflow);
    EXPECT_EQ(result.status, 0) << result.text();
    EXPECT_EQ(result.errors, "");
}

TEST(Workflow, IsNotTakenWithAMistakeInIt)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "build.yml";
    const std::string content = contentOf(workflow);
    for (const auto& [right, wrong] : std::vector<std::pair<std::string, std::string>>{
             {"runs-on: macos-15", "runs-on: macos-7"},
             {"timeout-minutes: 120", "timeout-minutes: never"},
             {"contents: read", "contents: write"},
             {"run: ./test", "rum: ./test"},
             {"actions/checkout@v4", "actions/checkout@main"},
             {"if: always()", "if: sometimes()"},
             {"restore-keys:", "restored-keys:"},
         })
    {
        const auto at = content.find(right);
        ASSERT_NE(at, std::string::npos) << right;
        writeFile(file, std::string(content).replace(at, right.size(), wrong));
        EXPECT_EQ(check(file).status, 1) << wrong;
    }
}

TEST(Workflow, RunsWhatThereIs)
{
    EXPECT_THAT(commands(), Not(IsEmpty()));
    for (const auto& [job, line] : commands()) {
        const std::string program = line.substr(0, line.find(' '));
        if (line != "apt-get update") {
            const auto permissions = std::filesystem::status(sources / program).permissions();
            EXPECT_NE(
                permissions & std::filesystem::perms::owner_exec, std::filesystem::perms::none)
                << line;
        }
        EXPECT_EQ(command({"bash", "-n", "-c", line}).status, 0) << line;
    }
}

TEST(Workflow, TestsAndPackagesOnBothSystems)
{
    const auto all = commands();
    const auto runs = [](const std::string& job, const std::string& beginning) {
        return Contains(testing::Pair(job, testing::StartsWith(beginning)));
    };
    EXPECT_THAT(all, runs("debian", "./test"));
    EXPECT_THAT(all, runs("debian", "packaging/deb"));
    EXPECT_THAT(all, runs("lint", "./test --lint"));
    EXPECT_THAT(all, runs("asan", "./test --asan"));
    EXPECT_THAT(all, runs("tsan", "./test --tsan"));
    EXPECT_THAT(all, runs("macos", "./test"));
    EXPECT_THAT(all, runs("macos-image", "packaging/macos/dmg --ad-hoc"));
    EXPECT_THAT(all, runs("macos-image", "packaging/macos/check-image "));
}

TEST(Workflow, HasTheImageWhateverTheTestsSay)
{
    EXPECT_THAT(commands(), Not(Contains(testing::Pair("macos-image", HasSubstr("test")))));
    EXPECT_THAT(contentOf(workflow), Not(HasSubstr("needs:")));
}

TEST(Workflow, HasTheCompilersCacheBeforeAnythingIsCompiled)
{
    std::map<std::string, std::string> first;
    for (const auto& [job, line] : commands()) {
        if (line != "apt-get update") {
            first.emplace(job, line);
        }
    }
    for (const auto& [job, line] : first) {
        EXPECT_THAT(line, testing::ContainsRegex("^packaging/install-dependencies .*(cache|test)"))
            << job;
    }
}

TEST(Workflow, NeedsNoSecret)
{
    EXPECT_THAT(contentOf(workflow), Not(HasSubstr("secrets")));
    EXPECT_THAT(contentOf(workflow), Not(HasSubstr("SIGNING")));
}

} // namespace
} // namespace orlimo
