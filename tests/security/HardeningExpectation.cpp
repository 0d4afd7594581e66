#include "tests/security/HardeningExpectation.h"

#include "tests/security/ElfProgram.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

namespace orlimo {

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::size_t occurrences(std::string_view whole, std::string_view part)
{
    std::size_t count = 0;
    for (std::size_t at = whole.find(part); at != std::string_view::npos;
         at = whole.find(part, at + part.size()))
    {
        ++count;
    }
    return count;
}

/// The instructions that mark where an indirect jump may land. The whole program's mark is for the
/// linker to set, which leaves it out as long as one of the C library's start files has none.
void expectLandingMarks(const ElfProgram& program, const std::filesystem::path& file)
{
    std::string_view mark;
    if (program.header().find("X86-64") != std::string::npos) {
        mark = "\xF3\x0F\x1E\xFA";
    } else if (program.header().find("AArch64") != std::string::npos) {
        mark = std::string_view("\x3F\x23\x03\xD5", 4);
    } else {
        return;
    }
    constexpr std::size_t fewerThanAnyProgramHas = 500;
    EXPECT_GT(occurrences(contentOf(file), mark), fewerThanAnyProgramHas) << file;
}

} // namespace

void expectHardened(const std::filesystem::path& file)
{
    const ElfProgram program(file);
    EXPECT_THAT(program.header(), ContainsRegex("Type: +DYN"));
    EXPECT_THAT(program.dynamicSection(), ContainsRegex("FLAGS_1.*NOW.*PIE"));
    EXPECT_THAT(program.segments(), HasSubstr("GNU_RELRO"));
    EXPECT_THAT(program.segments(), ContainsRegex("GNU_STACK .* RW  +0x"));
    EXPECT_THAT(program.segments(), Not(HasSubstr("RWE")));
    EXPECT_THAT(
        program.dynamicSection(),
        AllOf(Not(HasSubstr("RPATH")), Not(HasSubstr("RUNPATH")), Not(HasSubstr("TEXTREL"))));
    EXPECT_THAT(program.imports(), Contains("__stack_chk_fail"));
    // Printing is the one thing of the C library's that the program always does.
    EXPECT_THAT(program.imports(), Contains("__fprintf_chk"));
    EXPECT_THAT(program.imports(), Contains(HasSubstr("__glibcxx_assert_fail")));
    expectLandingMarks(program, file);
}

} // namespace orlimo
