#include "platform/preferences/UserDefaults.h"

#include "tests/platform/preferences/UserDefaultsStore.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

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

/// What another process prints that reads or writes a preference.
std::string probe(const std::vector<std::string>& arguments)
{
    ChildProcess process(ORLIMO_HOME_PROBE, {.arguments = arguments});
    EXPECT_EQ(process.awaitEnd().status, 0) << process.errors();
    return process.output();
}

class UserDefaultsTest : public testing::Test
{
protected:
    void SetUp() override { clearUserDefaults(); }
    void TearDown() override { clearUserDefaults(); }
};

TEST_F(UserDefaultsTest, KeysAreStoredSeparatelyAndExactly)
{
    EXPECT_FALSE(read());
    EXPECT_FALSE(holds("capturingEnabled")) << "reading stores nothing";
    write(true);
    write(false, "fourDigitInclude");
    write(true, "LoginItemEnabled");
    EXPECT_TRUE(read());
    EXPECT_FALSE(read("fourDigitInclude"));
    EXPECT_TRUE(holds("fourDigitInclude")) << "false is a value too";
    EXPECT_TRUE(read("LoginItemEnabled"));
    EXPECT_FALSE(read("loginItemEnabled"));
    EXPECT_FALSE(holds("loginItemEnabled"));
    EXPECT_FALSE(read("capturing"));
}

TEST_F(UserDefaultsTest, ValueIsSharedWithOtherProcessesAtOnceAndOthersAreKept)
{
    for (const bool value : {true, false, true}) {
        write(value);
        EXPECT_EQ(probe({"read-default", "capturingEnabled"}), value ? "true\n" : "false\n");
        probe({"write-default", "capturingEnabled", value ? "false" : "true"});
        EXPECT_EQ(read(), !value);
        EXPECT_TRUE(holds("capturingEnabled"));
    }
    probe({"write-default", "fourDigitInclude", "true"});
    write(true);
    EXPECT_EQ(probe({"read-default", "capturingEnabled"}), "true\n");
    EXPECT_EQ(probe({"read-default", "fourDigitInclude"}), "true\n");
}

} // namespace
} // namespace orlimo
