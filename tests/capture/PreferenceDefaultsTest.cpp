#include "capture/PreferenceDefaults.h"

#include "capture/PreferenceKeys.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/PreferenceSandbox.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

namespace orlimo {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

/// With the settings file of the sandboxed home.
class PreferenceDefaults : public testing::Test
{
protected:
    PreferenceSandbox sandbox;
    UserDefaults& defaults = standardUserDefaults();
};

TEST_F(PreferenceDefaults, KeysAreExact)
{
    EXPECT_THAT(
        preference::keys, ElementsAre("capturingEnabled", "fourDigitInclude", "loginItemEnabled"));
}

TEST_F(PreferenceDefaults, AbsentKeysReadAsFalse)
{
    for (const auto key : preference::keys) {
        EXPECT_FALSE(defaults.boolForKey(key)) << key;
    }
    EXPECT_THAT(defaults.dictionaryRepresentation(), IsEmpty());
}

TEST_F(PreferenceDefaults, EmptyStoreGetsAllThreeKeys)
{
    const OutputCapture capture;
    writePreferenceDefaults(defaults);
    EXPECT_THAT(
        defaults.dictionaryRepresentation(),
        ElementsAre(
            Pair("capturingEnabled", "true"),
            Pair("fourDigitInclude", "true"),
            Pair("loginItemEnabled", "true")));
    for (const auto key : preference::keys) {
        EXPECT_TRUE(defaults.boolForKey(key)) << key;
    }
    EXPECT_EQ(capture.text(), "");
}

TEST_F(PreferenceDefaults, AreStoredAndNotMerelyAssumed)
{
    writePreferenceDefaults(defaults);
    EXPECT_THAT(
        linesOf(contentOf(PreferenceSandbox::file())),
        UnorderedElementsAre(
            "[General]",
            "capturingEnabled=true",
            "fourDigitInclude=true",
            "loginItemEnabled=true"));
}

TEST_F(PreferenceDefaults, StoredValueIsKept)
{
    defaults.setBool(false, preference::fourDigitInclude);
    writePreferenceDefaults(defaults);
    EXPECT_THAT(
        defaults.dictionaryRepresentation(),
        ElementsAre(
            Pair("capturingEnabled", "true"),
            Pair("fourDigitInclude", "false"),
            Pair("loginItemEnabled", "true")));
}

TEST_F(PreferenceDefaults, LoginItemSwitchedOffStaysOff)
{
    defaults.setBool(false, preference::loginItemEnabled);
    writePreferenceDefaults(defaults);
    EXPECT_FALSE(defaults.boolForKey(preference::loginItemEnabled));
    EXPECT_TRUE(defaults.boolForKey(preference::capturingEnabled));
    EXPECT_TRUE(defaults.boolForKey(preference::fourDigitInclude));
}

TEST_F(PreferenceDefaults, ValueOfAnyKindIsKept)
{
    writeFile(
        PreferenceSandbox::file(),
        "[General]\ncapturingEnabled=no\nfourDigitInclude=\nloginItemEnabled=0\n");
    writePreferenceDefaults(defaults);
    for (const auto key : preference::keys) {
        EXPECT_FALSE(defaults.boolForKey(key)) << key;
    }
}

TEST_F(PreferenceDefaults, KeysAreComparedExactly)
{
    writeFile(
        PreferenceSandbox::file(),
        "[General]\nCapturingEnabled=false\nfourDigitIncluded=false\n[group]\nloginItemEnabled="
        "false\n");
    writePreferenceDefaults(defaults);
    for (const auto key : preference::keys) {
        EXPECT_TRUE(defaults.boolForKey(key)) << key;
    }
    EXPECT_FALSE(defaults.boolForKey("CapturingEnabled"));
}

TEST_F(PreferenceDefaults, SecondLaunchChangesNothing)
{
    writePreferenceDefaults(defaults);
    defaults.setBool(false, preference::capturingEnabled);
    const auto before = contentOf(PreferenceSandbox::file());
    writePreferenceDefaults(defaults);
    EXPECT_EQ(contentOf(PreferenceSandbox::file()), before);
}

TEST(PreferenceDefaultsOrder, EachKeyIsLookedForAfreshBeforeItIsWritten)
{
    MemoryUserDefaults defaults;
    writePreferenceDefaults(defaults);
    EXPECT_THAT(
        defaults.calls(),
        ElementsAre(
            "list",
            "write capturingEnabled = true",
            "list",
            "write fourDigitInclude = true",
            "list",
            "write loginItemEnabled = true"));
}

TEST(PreferenceDefaultsOrder, KeyThatIsThereIsNotWritten)
{
    MemoryUserDefaults defaults;
    defaults.setBool(true, preference::capturingEnabled);
    defaults.setBool(false, preference::loginItemEnabled);
    writePreferenceDefaults(defaults);
    EXPECT_THAT(
        defaults.calls(),
        ElementsAre(
            "write capturingEnabled = true",
            "write loginItemEnabled = false",
            "list",
            "list",
            "write fourDigitInclude = true",
            "list"));
}

} // namespace

} // namespace orlimo
