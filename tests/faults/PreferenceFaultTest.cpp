#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/PreloadEnvironment.h"

#include <gtest/gtest.h>

#include <string>

namespace orlimo {
namespace {

constexpr const char* usersSettings = "[General]\nfourDigitInclude=false\nnote=not ours\n";

/// The preferences of a user, read and stored by a process beneath which calls fail.
class PreferenceFaultTest : public testing::Test
{
protected:
    PreferenceFaultTest() { writeFile(file, usersSettings); }

    /// What the process says on standard error.
    [[nodiscard]] std::string store(const std::string& faults) const
    {
        auto environment = preloadEnvironment({ORLIMO_FAULT_INJECTOR});
        environment["ORLIMO_FAULTS"] = faults;
        environment["XDG_CONFIG_HOME"] = folder.path().string();
        ChildProcess probe(
            ORLIMO_HOME_PROBE,
            {.arguments = {"write-default", "fourDigitInclude", "true"},
             .environment = environment});
        EXPECT_EQ(probe.awaitEnd().status, 0);
        return probe.errors();
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "Orlimo/Orlimo.conf";
    std::string cannotRead = "Orlimo cannot read its preferences in " + file.string() + "\n";
    std::string cannotStore = "Orlimo cannot store preferences in " + file.string() + "\n";
};

TEST_F(PreferenceFaultTest, WithoutAFaultTheValueIsStored)
{
    EXPECT_EQ(store(""), "");
    EXPECT_EQ(contentOf(file), "[General]\nfourDigitInclude=true\nnote=not ours\n");
}

TEST_F(PreferenceFaultTest, AFileThatCannotBeReadIsNotReplaced)
{
    EXPECT_EQ(store("read */Orlimo.conf EIO always"), cannotRead + cannotStore);
    EXPECT_EQ(contentOf(file), usersSettings);
}

TEST_F(PreferenceFaultTest, AFileThatCannotBeOpenedIsNotReplaced)
{
    EXPECT_EQ(store("open */Orlimo.conf EMFILE always"), cannotRead + cannotStore);
    EXPECT_EQ(contentOf(file), usersSettings);
}

TEST_F(PreferenceFaultTest, AFileIsOpenedByNothingButTheReadsThatReportFaults)
{
    EXPECT_EQ(store("open */Orlimo.conf EMFILE 1"), cannotRead + cannotStore);
    EXPECT_EQ(contentOf(file), usersSettings);
}

TEST_F(PreferenceFaultTest, AFileWhoseSuccessorCannotBeWrittenStays)
{
    EXPECT_EQ(store("write */Orlimo.conf.* ENOSPC always"), cannotStore);
    EXPECT_EQ(contentOf(file), usersSettings);
}

} // namespace
} // namespace orlimo
