#include "tests/scripts/StandInPrograms.h"
#include "tests/support/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace orlimo {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// The packages of a group in the list for Homebrew.
std::vector<std::string> packagesOf(const std::string& wanted)
{
    std::vector<std::string> packages;
    for (const std::string& line :
         linesOf(contentOf(ORLIMO_SOURCES "/packaging/homebrew-packages"))) {
        std::istringstream words(line);
        std::string group;
        std::string package;
        words >> group >> package;
        if (group == wanted) {
            packages.push_back(package);
        }
    }
    return packages;
}

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

/// Scripts that ask a Mac which system it is and what it has.
class HomebrewTest : public testing::Test
{
protected:
    HomebrewTest()
    {
        programs.add("uname", "echo Darwin");
        programs.add("xcode-select", "echo /Library/Developer/CommandLineTools");
        brew();
        std::filesystem::create_directories(prefix / "opt");
    }

    /// Homebrew as it is, with the package of ICU that its name is an alias of. `install` is how it
    /// ends when it is to install something.
    void brew(const std::string& install = "exit 0")
    {
        programs.add(
            "brew",
            "prefix=\"" + prefix.string() + "\"\n" +
                "case \"$*\" in\n"
                "--prefix) echo \"$prefix\" ;;\n"
                "'--prefix icu4c') echo \"$prefix/opt/icu4c@77\" ;;\n"
                "'--prefix --installed icu4c') [ -d \"$prefix/opt/icu4c@77\" ] ;;\n"
                "'--prefix --installed '*) exit 1 ;;\n"
                "install*) " +
                install + " ;;\nesac");
    }

    /// Sources the environment and prints what the lines `show` say.
    [[nodiscard]] CommandResult
    inEnvironment(const std::string& show, const std::optional<std::string>& prefixPath) const
    {
        const auto script = programs.path() / "show";
        writeFile(
            script,
            "set -euo pipefail\n. \"" ORLIMO_SOURCES "/packaging/toolchain-environment\"\n" + show);
        return CommandResult::of(
            "/bin/bash",
            {.arguments = {script},
             .environment = {
                 {"PATH", (programs.path() / "bin").string() + ":/usr/bin:/bin"},
                 {"ORLIMO_HOMEBREW_PREFIX", std::nullopt},
                 {"CMAKE_PREFIX_PATH", prefixPath}}});
    }

    void install(const std::string& package) const
    {
        std::filesystem::create_directories(prefix / "opt" / package);
    }

    [[nodiscard]] CommandResult installDependencies(const std::vector<std::string>& groups) const
    {
        return programs.run(
            "packaging/install-dependencies", groups, {{"ORLIMO_HOMEBREW_PREFIX", std::nullopt}});
    }

    /// What Homebrew was asked to install.
    [[nodiscard]] std::vector<std::string> installations() const
    {
        auto calls = programs.calls();
        std::erase_if(calls, [](const auto& call) { return !call.starts_with("brew install"); });
        return calls;
    }

    StandInPrograms programs;
    std::filesystem::path prefix = programs.path() / "homebrew";
};

TEST_F(HomebrewTest, InstallsWhatIsMissing)
{
    const auto result = installDependencies({"build", "run"});
    EXPECT_EQ(result.status, 0) << result.text();
    const auto packages = joined(packagesOf("build"));
    EXPECT_EQ(result.output, "Installing " + packages + "\n");
    EXPECT_THAT(installations(), ElementsAre("brew install --quiet " + packages));
}

TEST_F(HomebrewTest, InstallsOnlyWhatIsMissing)
{
    for (const std::string& package : packagesOf("build")) {
        if (package != "icu4c") {
            install(package);
        }
    }
    EXPECT_EQ(installDependencies({"build"}).status, 0);
    EXPECT_THAT(installations(), ElementsAre("brew install --quiet icu4c"));
}

TEST_F(HomebrewTest, KnowsAPackageByItsAlias)
{
    for (const std::string& package : packagesOf("build")) {
        install(package == "icu4c" ? "icu4c@77" : package);
    }
    EXPECT_EQ(installDependencies({"build"}).text(), "");
    EXPECT_THAT(installations(), IsEmpty());
}

TEST_F(HomebrewTest, TouchesNothingWhenEverythingIsThere)
{
    for (const char* group : {"build", "run", "test", "lint"}) {
        for (const std::string& package : packagesOf(group)) {
            install(package);
        }
    }
    const auto result = installDependencies({"build", "run", "test", "lint"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.text(), "");
    EXPECT_THAT(installations(), IsEmpty());
}

TEST_F(HomebrewTest, AsksForNoPackageOfDebian)
{
    programs.add("dpkg-query");
    programs.add("apt-get");
    programs.add("sudo");
    EXPECT_EQ(installDependencies({"build", "run", "test", "lint"}).status, 0);
    for (const std::string& call : programs.calls()) {
        EXPECT_THAT(
            call, AllOf(Not(StartsWith("dpkg")), Not(StartsWith("apt")), Not(StartsWith("sudo"))));
    }
}

TEST_F(HomebrewTest, AFailureOfHomebrewIsOnesOwn)
{
    brew("exit 7");
    EXPECT_EQ(installDependencies({"test"}).status, 7);
}

TEST_F(HomebrewTest, SaysThatHomebrewIsMissing)
{
    std::filesystem::remove(programs.path() / "bin/brew");
    programs.keepOnly({"dirname", "awk"});
    const auto result = installDependencies({"build"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("Homebrew is missing"));
}

TEST_F(HomebrewTest, SaysThatTheCompilerIsMissing)
{
    programs.add("xcode-select", "exit 2");
    const auto result = installDependencies({"build"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("xcode-select --install"));
    EXPECT_THAT(installations(), IsEmpty());
}

TEST_F(HomebrewTest, KnowsNoOtherGroup)
{
    const auto result = installDependencies({"build", "cake"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("\"cake\""));
    EXPECT_THAT(installations(), IsEmpty());
}

TEST_F(HomebrewTest, LeadsTheBuildToThePackages)
{
    // The second time nobody is asked.
    const auto result = inEnvironment(
        ". \"" ORLIMO_SOURCES "/packaging/toolchain-environment\"\n"
        "echo \"$CMAKE_PREFIX_PATH\"\necho \"$PATH\"\n",
        "/own");
    const std::string kegs = (prefix / "opt").string();
    EXPECT_THAT(
        linesOf(result.output),
        ElementsAre(
            prefix.string() + ":" + kegs + "/icu4c@77:/own",
            (programs.path() / "bin").string() + ":/usr/bin:/bin:" + kegs + "/llvm/bin"))
        << result.errors;
    auto calls = programs.calls();
    std::erase_if(calls, [](const auto& call) { return !call.starts_with("brew"); });
    EXPECT_THAT(calls, ElementsAre("brew --prefix", "brew --prefix icu4c"));
}

TEST_F(HomebrewTest, LeavesOtherSystemsAsTheyAre)
{
    programs.add("uname", "echo Linux");
    const auto result = inEnvironment("echo \"${CMAKE_PREFIX_PATH-none}\"\n", std::nullopt);
    EXPECT_EQ(result.text(), "none\n");
    EXPECT_THAT(programs.calls(), Not(Contains(StartsWith("brew"))));
}

} // namespace
} // namespace orlimo
