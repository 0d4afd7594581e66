#pragma once

#include "tests/packaging/CommandResult.h"

#include <QByteArray>
#include <QFile>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace orlimo {

/// What readelf prints about `file` with this option; one that it cannot read is a test failure.
inline std::string described(const std::filesystem::path& file, const std::string& option)
{
    const auto result =
        CommandResult::of("/usr/bin/readelf", {.arguments = {option, "--wide", file.string()}});
    EXPECT_EQ(result.status, 0) << result.text();
    return result.output;
}

/// The instructions that mark where an indirect jump may land. The whole program's mark is for the
/// linker to set, which leaves it out as long as one of the C library's start files has none.
inline void expectLandingMarks(const std::string& header, const std::filesystem::path& file)
{
    QByteArray mark;
    if (header.find("X86-64") != std::string::npos) {
        mark = "\xF3\x0F\x1E\xFA";
    } else if (header.find("AArch64") != std::string::npos) {
        mark = "\x3F\x23\x03\xD5";
    } else {
        return;
    }
    QFile content(QString::fromStdString(file.string()));
    ASSERT_TRUE(content.open(QIODevice::ReadOnly)) << file;
    constexpr qsizetype fewerThanThereAre = 500;
    EXPECT_GE(content.readAll().count(mark), fewerThanThereAre) << file;
}

/// Expects that the program `file` was built with everything that makes a mistake in it harder to
/// exploit.
inline void expectHardened(const std::filesystem::path& file)
{
    using testing::AllOf;
    using testing::ContainsRegex;
    using testing::HasSubstr;
    using testing::Not;
    const std::string header = described(file, "--file-header");
    const std::string segments = described(file, "--program-headers");
    const std::string dynamicSection = described(file, "--dynamic");
    const std::string symbols = described(file, "--dyn-syms");
    EXPECT_THAT(header, ContainsRegex("Type: +DYN"));
    EXPECT_THAT(dynamicSection, ContainsRegex("FLAGS_1.*NOW.*PIE"));
    EXPECT_THAT(segments, HasSubstr("GNU_RELRO"));
    EXPECT_THAT(segments, ContainsRegex("GNU_STACK .* RW  +0x"));
    EXPECT_THAT(segments, Not(HasSubstr("RWE")));
    EXPECT_THAT(
        dynamicSection,
        AllOf(Not(HasSubstr("RPATH")), Not(HasSubstr("RUNPATH")), Not(HasSubstr("TEXTREL"))));
    EXPECT_THAT(symbols, ContainsRegex("UND __stack_chk_fail(@| |\n|$)"));
    // Printing is the one thing of the C library's that the program always does.
    EXPECT_THAT(symbols, ContainsRegex("UND __fprintf_chk(@| |\n|$)"));
    EXPECT_THAT(symbols, ContainsRegex("UND [^ ]*__glibcxx_assert_fail"));
    expectLandingMarks(header, file);
}

} // namespace orlimo
