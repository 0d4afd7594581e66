#include "tests/scripts/FakePrograms.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

/// The packages of a group in the list for Homebrew.
std::vector<std::string> packagesOf(const std::string& group)
{
    const auto listing = CommandResult::of(
        "/usr/bin/env",
        {.arguments = {
             "awk",
             "$1 == \"" + group + "\" { print $2 }",
             ORLIMO_SOURCES "/packaging/homebrew-packages"}});
    return linesOf(listing.output);
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

    FakePrograms programs;
    std::filesystem::path prefix = programs.path() / "homebrew";
};

TEST_F(HomebrewTest, InstallsWhatIsMissing)
{
    // Nothing for a group of which macOS has everything.
    const auto all = installDependencies({"build", "run"});
    EXPECT_EQ(all.status, 0) << all.text();
    std::string packages;
    for (const std::string& package : packagesOf("build")) {
        packages += " " + package;
    }
    EXPECT_EQ(all.output, "== installing" + packages + "\n");

    for (const std::string& package : packagesOf("build")) {
        if (package != "icu4c") {
            install(package);
        }
    }
    EXPECT_EQ(installDependencies({"build"}).status, 0);
    EXPECT_THAT(
        installations(),
        ElementsAre("brew install --quiet" + packages, "brew install --quiet icu4c"));
    brew("exit 7");
    EXPECT_EQ(installDependencies({"test"}).status, 7) << "its failure is one's own";
}

TEST_F(HomebrewTest, TouchesNothingWhenEverythingIsThere)
{
    for (const char* program : {"dpkg-query", "apt-get", "sudo"}) {
        programs.add(program);
    }
    for (const char* group : {"build", "run", "test", "lint"}) {
        for (const std::string& package : packagesOf(group)) {
            install(package == "icu4c" ? "icu4c@77" : package);
        }
    }
    const auto result = installDependencies({"build", "run", "test", "lint"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.text(), "");
    EXPECT_THAT(programs.calls(), Not(Contains(MatchesRegex("(brew install|dpkg|apt|sudo).*"))));
}

TEST_F(HomebrewTest, SaysWhatIsMissingOrNotUnderstood)
{
    const auto group = installDependencies({"build", "cake"});
    EXPECT_EQ(group.status, 2);
    EXPECT_THAT(group.errors, HasSubstr("\"cake\""));

    programs.add("xcode-select", "exit 2");
    const auto compiler = installDependencies({"build"});
    EXPECT_EQ(compiler.status, 1);
    EXPECT_THAT(compiler.errors, HasSubstr("xcode-select --install"));
    EXPECT_THAT(installations(), IsEmpty());

    programs.add("xcode-select");
    std::filesystem::remove(programs.path() / "bin/brew");
    programs.keepOnly({"dirname", "awk"});
    const auto homebrew = installDependencies({"build"});
    EXPECT_EQ(homebrew.status, 1);
    EXPECT_THAT(homebrew.errors, HasSubstr("Homebrew is missing"));
}

TEST_F(HomebrewTest, BuildFindsThePackagesOnAMacAlone)
{
    const auto script = programs.path() / "show";
    // The second time Homebrew is not called.
    const std::string source = ". \"" ORLIMO_SOURCES "/packaging/toolchain-environment\"\n";
    writeFile(
        script,
        "set -euo pipefail\n" + source + source +
            "echo \"${CMAKE_PREFIX_PATH-none}\"\necho \"$PATH\"\n");
    const auto show = [&](const std::optional<std::string>& prefixPath) {
        const auto shown = programs.run(
            script,
            {},
            {{"ORLIMO_HOMEBREW_PREFIX", std::nullopt}, {"CMAKE_PREFIX_PATH", prefixPath}});
        EXPECT_EQ(shown.errors, "");
        return linesOf(shown.output);
    };
    const std::string kegs = (prefix / "opt").string();
    EXPECT_THAT(
        show("/own"),
        ElementsAre(
            prefix.string() + ":" + kegs + "/icu4c@77:/own",
            AllOf(
                StartsWith((programs.path() / "bin:").string()),
                EndsWith(":" + kegs + "/llvm/bin"))));
    auto calls = programs.calls();
    std::erase_if(calls, [](const auto& call) { return !call.starts_with("brew"); });
    EXPECT_THAT(calls, ElementsAre("brew --prefix", "brew --prefix icu4c"));

    programs.add("uname", "echo Linux");
    EXPECT_EQ(show(std::nullopt).front(), "none");
    EXPECT_EQ(programs.calls().back(), "uname -s");
}

} // namespace
} // namespace orlimo
