#include "tests/security/HardeningExpectation.h"

#include "tests/security/ElfProgram.h"

#include <QByteArray>
#include <QFile>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace orlimo {

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

bool holdsOften(const QByteArray& whole, const QByteArray& part)
{
    constexpr int fewerThanThereAre = 500;
    qsizetype at = 0;
    for (int count = 0; count < fewerThanThereAre; ++count) {
        at = whole.indexOf(part, at);
        if (at < 0) {
            return false;
        }
        at += part.size();
    }
    return true;
}

/// The instructions that mark where an indirect jump may land. The whole program's mark is for the
/// linker to set, which leaves it out as long as one of the C library's start files has none.
void expectLandingMarks(const ElfProgram& program, const std::filesystem::path& file)
{
    QByteArray mark;
    if (program.header().find("X86-64") != std::string::npos) {
        mark = "\xF3\x0F\x1E\xFA";
    } else if (program.header().find("AArch64") != std::string::npos) {
        mark = "\x3F\x23\x03\xD5";
    } else {
        return;
    }
    QFile content(QString::fromStdString(file.string()));
    ASSERT_TRUE(content.open(QIODevice::ReadOnly)) << file;
    EXPECT_TRUE(holdsOften(content.readAll(), mark)) << file;
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
