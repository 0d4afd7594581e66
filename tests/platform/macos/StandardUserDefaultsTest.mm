#include "platform/UserDefaults.h"
#include "platform/macos/StringConversion.h"
#include "tests/platform/UserDefaultsStore.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

/// What other programs may have put into the program's store.
class StandardUserDefaultsTest : public testing::Test
{
protected:
    void SetUp() override { clearUserDefaults(); }
    void TearDown() override { clearUserDefaults(); }

    static void store(id value)
    {
        [[NSUserDefaults standardUserDefaults] setObject:value forKey:@"capturingEnabled"];
        [[NSUserDefaults standardUserDefaults] synchronize];
    }

    static bool read() { return standardUserDefaults().boolForKey("capturingEnabled"); }

    static std::string printed()
    {
        return standardUserDefaults().dictionaryRepresentation().at("capturingEnabled");
    }
};

TEST_F(StandardUserDefaultsTest, ReadsStringsByTheRulesForBooleans)
{
    @autoreleasepool {
        for (NSString* text in @[ @"YES", @"yes", @"true", @"TRUE", @"T", @"1", @"-1", @" 1" ]) {
            store(text);
            EXPECT_TRUE(read()) << toUtf8(text);
        }
        for (NSString* text in @[ @"NO", @"no", @"false", @"0", @"00", @"on", @"", @"off" ]) {
            store(text);
            EXPECT_FALSE(read()) << toUtf8(text);
        }
    }
}

TEST_F(StandardUserDefaultsTest, ReadsNumbersAsTrueUnlessTheyAreZero)
{
    @autoreleasepool {
        for (NSNumber* number in @[ [NSNumber numberWithBool:YES], @1, @2, @-1, @0.5 ]) {
            store(number);
            EXPECT_TRUE(read()) << toUtf8([number description]);
        }
        for (NSNumber* number in @[ [NSNumber numberWithBool:NO], @0, @0.0 ]) {
            store(number);
            EXPECT_FALSE(read()) << toUtf8([number description]);
        }
    }
}

TEST_F(StandardUserDefaultsTest, ReadsAnythingElseAsFalse)
{
    @autoreleasepool {
        for (id value in @[
                 [NSDate dateWithTimeIntervalSince1970:1'000'000'000],
                 @[ @"YES", @1 ],
                 @{@"capturingEnabled" : @1},
                 [NSData dataWithBytes:"YES" length:3],
             ])
        {
            store(value);
            EXPECT_FALSE(read()) << toUtf8([value description]);
        }
    }
}

TEST_F(StandardUserDefaultsTest, PrintsWhatIsStored)
{
    @autoreleasepool {
        standardUserDefaults().setBool(true, "capturingEnabled");
        EXPECT_EQ(printed(), "1");
        standardUserDefaults().setBool(false, "capturingEnabled");
        EXPECT_EQ(printed(), "0");
        store(@"two words");
        EXPECT_EQ(printed(), "two words");
        store(@7);
        EXPECT_EQ(printed(), "7");
        for (id value in @[ @[ @1, @2 ], [NSDate date], @{@"a" : @1} ]) {
            store(value);
            EXPECT_FALSE(printed().empty());
        }
    }
}

TEST_F(StandardUserDefaultsTest, StoresABooleanAndNoNumberOrText)
{
    @autoreleasepool {
        standardUserDefaults().setBool(true, "capturingEnabled");
        id const stored = [[NSUserDefaults standardUserDefaults] objectForKey:@"capturingEnabled"];
        EXPECT_TRUE([stored isEqual:[NSNumber numberWithBool:YES]]);
    }
}

TEST_F(StandardUserDefaultsTest, AreInTheSandboxUnderTheBundlesIdentifier)
{
    standardUserDefaults().setBool(true, "capturingEnabled");
    // NOLINTNEXTLINE(concurrency-mt-unsafe): never set here
    const std::filesystem::path home = std::getenv("HOME");
    EXPECT_TRUE(std::filesystem::exists(home / "GNUstep/Defaults/app.orlimo.Orlimo.plist"));
}

} // namespace
} // namespace orlimo
