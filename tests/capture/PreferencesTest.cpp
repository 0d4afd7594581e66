#include "capture/Preferences.h"

#include "tests/capture/MemoryUserDefaults.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {

namespace {

using testing::ElementsAre;
using testing::Pair;

TEST(PreferenceDefaults, EmptyStoreGetsEachKeyLookedUpAfreshBeforeItIsWritten)
{
    MemoryUserDefaults defaults;
    const OutputCapture capture;
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
    EXPECT_EQ(capture.text(), "");
}

TEST(PreferenceDefaults, StoredValueIsKeptAndKeysAreComparedExactly)
{
    MemoryUserDefaults defaults;
    defaults.setBool(false, "fourDigitInclude");
    defaults.setBool(false, "FourDigitInclude");
    defaults.setBool(false, "LoginItemEnabled");
    writePreferenceDefaults(defaults);
    EXPECT_THAT(
        defaults.dictionaryRepresentation(),
        ElementsAre(
            Pair("FourDigitInclude", "false"),
            Pair("LoginItemEnabled", "false"),
            Pair("capturingEnabled", "true"),
            Pair("fourDigitInclude", "false"),
            Pair("loginItemEnabled", "true")));
    defaults.setBool(false, "loginItemEnabled");
    writePreferenceDefaults(defaults);
    EXPECT_FALSE(defaults.boolForKey(preference::loginItemEnabled));
}

} // namespace

} // namespace orlimo
