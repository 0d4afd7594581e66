#include "platform/preferences/UserDefaults.h"

#include "tests/platform/preferences/UserDefaultsStore.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace orlimo {
namespace {

constexpr std::string_view key = "capturingEnabled";

bool read(std::string_view which = key)
{
    return standardUserDefaults().boolForKey(which);
}

void write(bool value, std::string_view which = key)
{
    standardUserDefaults().setBool(value, which);
}

bool holds(const std::string& which)
{
    return standardUserDefaults().dictionaryRepresentation().contains(which);
}

void writeInAnotherProcess(bool value, std::string_view which = key)
{
    ChildProcess writer(
        ORLIMO_HOME_PROBE,
        {.arguments = {"write-default", std::string(which), value ? "true" : "false"}});
    EXPECT_EQ(writer.awaitEnd().status, 0) << writer.errors();
}

bool readInAnotherProcess(std::string_view which = key)
{
    ChildProcess reader(ORLIMO_HOME_PROBE, {.arguments = {"read-default", std::string(which)}});
    EXPECT_EQ(reader.awaitEnd().status, 0) << reader.errors();
    EXPECT_TRUE(reader.output() == "true\n" || reader.output() == "false\n") << reader.output();
    return reader.output() == "true\n";
}

class UserDefaultsTest : public testing::Test
{
protected:
    void SetUp() override { clearUserDefaults(); }
    void TearDown() override { clearUserDefaults(); }
};

TEST_F(UserDefaultsTest, IsOne)
{
    EXPECT_EQ(&standardUserDefaults(), &standardUserDefaults());
}

TEST_F(UserDefaultsTest, AnAbsentKeyIsFalse)
{
    EXPECT_FALSE(read());
    EXPECT_FALSE(holds("capturingEnabled")) << "reading stores nothing";
    write(true, "fourDigitInclude");
    EXPECT_FALSE(read());
}

TEST_F(UserDefaultsTest, ReadsBackWhatWasSet)
{
    write(true);
    EXPECT_TRUE(read());
    write(false);
    EXPECT_FALSE(read());
    write(true);
    EXPECT_TRUE(read());
}

TEST_F(UserDefaultsTest, KeepsEachKeyByItself)
{
    write(true, "capturingEnabled");
    write(false, "fourDigitInclude");
    write(true, "loginItemEnabled");
    EXPECT_TRUE(read("capturingEnabled"));
    EXPECT_FALSE(read("fourDigitInclude"));
    EXPECT_TRUE(read("loginItemEnabled"));
}

TEST_F(UserDefaultsTest, TellsKeysApartByCase)
{
    write(true, "CapturingEnabled");
    EXPECT_FALSE(read("capturingEnabled"));
    EXPECT_FALSE(read("capturing"));
    EXPECT_TRUE(read("CapturingEnabled"));
}

TEST_F(UserDefaultsTest, ListsWhatWasSetAndNothingThatWasNot)
{
    EXPECT_FALSE(holds("capturingEnabled"));
    write(true, "capturingEnabled");
    write(false, "fourDigitInclude");
    EXPECT_TRUE(holds("capturingEnabled"));
    EXPECT_TRUE(holds("fourDigitInclude")) << "false is a value too";
    EXPECT_FALSE(holds("loginItemEnabled"));
}

TEST_F(UserDefaultsTest, SeesWhatAnotherProcessStored)
{
    for (const bool value : {true, false, true}) {
        writeInAnotherProcess(value);
        EXPECT_EQ(read(), value);
    }
}

TEST_F(UserDefaultsTest, ListsWhatAnotherProcessStored)
{
    EXPECT_FALSE(holds("loginItemEnabled"));
    writeInAnotherProcess(false, "loginItemEnabled");
    EXPECT_TRUE(holds("loginItemEnabled"));
}

TEST_F(UserDefaultsTest, IsStoredForOtherProcessesAtOnce)
{
    for (const bool value : {true, false, true}) {
        write(value);
        EXPECT_EQ(readInAnotherProcess(), value);
    }
}

TEST_F(UserDefaultsTest, WritesOverWhatAnotherProcessStoredAndKeepsTheRest)
{
    write(true);
    writeInAnotherProcess(false);
    writeInAnotherProcess(true, "fourDigitInclude");
    write(true);
    EXPECT_TRUE(read());
    EXPECT_TRUE(readInAnotherProcess());
    EXPECT_TRUE(readInAnotherProcess("fourDigitInclude"));
}

} // namespace
} // namespace orlimo
