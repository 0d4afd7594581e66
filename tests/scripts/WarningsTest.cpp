#include "tests/scripts/FakePrograms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace orlimo {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

/// The scripts and presets of the tree around a program of one line.
class WarningsTest : public testing::Test
{
protected:
    WarningsTest()
    {
        // Nothing is to be installed for it.
        programs.add("uname", "echo Linux");
        programs.add("dpkg-query", "echo installed");
        for (const char* part : {"CMakePresets.json", "cmake", "packaging", "run", "test"}) {
            std::filesystem::create_symlink(
                std::filesystem::path(ORLIMO_SOURCES) / part, tree.path() / part);
        }
        writeFile(tree.path() / "CMakeLists.txt", R"(
            cmake_minimum_required(VERSION 3.25)
            project(Warnings LANGUAGES CXX)
            include(cmake/OrlimoOptions.cmake)
            add_executable(orlimo main.cpp)
            target_link_libraries(orlimo PRIVATE orlimo_options)
            add_custom_target(orlimo-sample-store)
            add_custom_target(orlimo_unit_programs DEPENDS orlimo)
            enable_testing()
            add_test(NAME program COMMAND orlimo)
            set_tests_properties(program PROPERTIES LABELS unit))");
        writeFile(home / "Library/Messages/chat.db", "");
    }

    [[nodiscard]] CommandResult
    execute(const std::string& script, const std::vector<std::string>& arguments = {}) const
    {
        return programs.run(
            tree.path() / script,
            arguments,
            {{"CCACHE_DISABLE", "1"}, {"HOME", home}, {"QT_QPA_PLATFORM", "offscreen"}});
    }

    void write(const std::string& program) const { writeFile(tree.path() / "main.cpp", program); }

    FakePrograms programs;
    TemporaryFolder tree;
    std::filesystem::path home = programs.path() / "home";
};

TEST_F(WarningsTest, KeepNobodyFromUsingTheProgramAndFailTheTests)
{
    write("int main() { int unused; }\n");
    // Whichever configured the tree before.
    for (int round = 0; round < 2; ++round) {
        const auto use = execute("run");
        EXPECT_EQ(use.status, 0) << use.text();
        const auto test = execute("test", {"--unit"});
        EXPECT_NE(test.status, 0);
        EXPECT_THAT(test.errors, ContainsRegex("\\[-Werror[=,]"));
    }
}

TEST_F(WarningsTest, AreErrorsAsLongAsThereAreNoneSoThatNothingIsCompiledAnew)
{
    write("int main() {}\n");
    EXPECT_EQ(execute("test", {"--unit"}).status, 0);
    EXPECT_EQ(execute("run").status, 0);
    EXPECT_THAT(
        contentOf(tree.path() / "build/release/CMakeCache.txt"),
        ContainsRegex("ORLIMO_WARNINGS_AS_ERRORS:[A-Z]+=ON"));
    // An error that is none of the warnings' is shown at once.
    write("int main() { return nothing; }\n");
    const auto result = execute("run");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("nothing"));
    EXPECT_THAT(
        contentOf(tree.path() / "build/release/CMakeCache.txt"),
        ContainsRegex("ORLIMO_WARNINGS_AS_ERRORS:[A-Z]+=ON"));
}

} // namespace
} // namespace orlimo
