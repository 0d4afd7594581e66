#include "platform/preferences/UserDefaults.h"

#include "platform/threads/UptimeClock.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace orlimo {
namespace {

/// Ends each key, for on macOS the store outlives the test.
const std::string suffix = std::to_string(currentUptime().time_since_epoch().count());
const std::string key = "capturingEnabled" + suffix;
const std::string otherKey = "fourDigitInclude" + suffix;

bool read(std::string_view which)
{
    return standardUserDefaults().boolForKey(which);
}

void write(bool value, std::string_view which)
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

TEST(UserDefaults, KeysAreStoredSeparatelyAndExactly)
{
    EXPECT_FALSE(read(key));
    EXPECT_FALSE(holds(key)) << "reading stores nothing";
    write(true, key);
    write(false, otherKey);
    write(true, "LoginItemEnabled" + suffix);
    EXPECT_TRUE(read(key));
    EXPECT_FALSE(read(otherKey));
    EXPECT_TRUE(holds(otherKey)) << "false is a value too";
    EXPECT_TRUE(read("LoginItemEnabled" + suffix));
    EXPECT_FALSE(read("loginItemEnabled" + suffix));
    EXPECT_FALSE(holds("loginItemEnabled" + suffix));
    EXPECT_FALSE(read(key.substr(0, key.size() - 1)));
}

TEST(UserDefaults, ValueIsSharedWithOtherProcessesAtOnceAndOthersAreKept)
{
    for (const bool value : {true, false, true}) {
        write(value, key);
        EXPECT_EQ(probe({"read-default", key}), value ? "true\n" : "false\n");
        probe({"write-default", key, value ? "false" : "true"});
        EXPECT_EQ(read(key), !value);
        EXPECT_TRUE(holds(key));
    }
    probe({"write-default", otherKey, "true"});
    write(true, key);
    EXPECT_EQ(probe({"read-default", key}), "true\n");
    EXPECT_EQ(probe({"read-default", otherKey}), "true\n");
}

} // namespace
} // namespace orlimo
