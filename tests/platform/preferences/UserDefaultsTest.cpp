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

TEST_F(UserDefaultsTest, AbsentKeyIsFalse)
{
    EXPECT_FALSE(read());
    EXPECT_FALSE(holds("capturingEnabled")) << "reading stores nothing";
}

TEST_F(UserDefaultsTest, KeysAreStoredSeparatelyAndExactly)
{
    write(true, "capturingEnabled");
    write(false, "fourDigitInclude");
    write(true, "LoginItemEnabled");
    EXPECT_TRUE(read("capturingEnabled"));
    EXPECT_FALSE(read("fourDigitInclude"));
    EXPECT_TRUE(holds("fourDigitInclude")) << "false is a value too";
    EXPECT_TRUE(read("LoginItemEnabled"));
    EXPECT_FALSE(read("loginItemEnabled"));
    EXPECT_FALSE(holds("loginItemEnabled"));
    EXPECT_FALSE(read("capturing"));
}

TEST_F(UserDefaultsTest, ValueIsStoredForOtherProcessesAtOnce)
{
    for (const bool value : {true, false, true}) {
        write(value);
        EXPECT_EQ(read(), value);
        EXPECT_EQ(readInAnotherProcess(), value);
    }
}

TEST_F(UserDefaultsTest, ReadSeesValueOfAnotherProcessAndWriteKeepsItsOthers)
{
    EXPECT_FALSE(holds("capturingEnabled"));
    for (const bool value : {true, false, true}) {
        writeInAnotherProcess(value);
        EXPECT_EQ(read(), value);
        EXPECT_TRUE(holds("capturingEnabled"));
    }
    writeInAnotherProcess(true, "fourDigitInclude");
    write(false);
    EXPECT_FALSE(readInAnotherProcess());
    EXPECT_TRUE(readInAnotherProcess("fourDigitInclude"));
}

} // namespace
} // namespace orlimo
