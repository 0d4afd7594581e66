#include "capture/CodeExtraction.h"
#include "capture/Preferences.h"
#include "tests/capture/MessageTestBase.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/watch/SystemWatchServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

namespace orlimo {
namespace {

/// Capturing with the preferences in their file.
class CapturePreferences : public MessageTestBase
{};

TEST_F(CapturePreferences, DefaultsAreStoredInTheFileAndStoredValuesOfAnyKindAreKept)
{
    writeFile(
        PreferenceSandbox::file(),
        "[General]\ncapturingEnabled=no\nfourDigitInclude=\n[group]\nloginItemEnabled=false\n");
    writePreferenceDefaults(defaults);
    EXPECT_FALSE(defaults.boolForKey(preference::capturingEnabled));
    EXPECT_FALSE(defaults.boolForKey(preference::fourDigitInclude));
    EXPECT_TRUE(defaults.boolForKey(preference::loginItemEnabled));

    std::filesystem::remove(PreferenceSandbox::file());
    writePreferenceDefaults(defaults);
    EXPECT_THAT(
        linesOf(contentOf(PreferenceSandbox::file())),
        testing::UnorderedElementsAre(
            "[General]",
            "capturingEnabled=true",
            "fourDigitInclude=true",
            "loginItemEnabled=true"));
}

TEST_F(CapturePreferences, ChangeByAnotherProgramAppliesToNextExtraction)
{
    const OutputCapture swallowed;
    EXPECT_EQ(extractCode("Code 1234", defaults), std::nullopt) << "an absent preference is off";
    writeFile(PreferenceSandbox::file(), "[General]\nfourDigitInclude=1\n");
    EXPECT_EQ(extractCode("Code 1234", defaults), "1234");
    defaults.setBool(false, preference::fourDigitInclude);
    EXPECT_EQ(extractCode("Code 1234", defaults), std::nullopt);
}

TEST_F(CapturePreferences, AbsentOrDamagedFileSwitchesCapturingOff)
{
    store.appendText("Your code is 482913");
    const auto message = watching();
    const OutputCapture capture;
    std::filesystem::remove(PreferenceSandbox::file());
    message->fileDidChange();
    const std::string garbage = "\x01\x02 no preferences \xFF\n[[[\n=\n";
    writeFile(PreferenceSandbox::file(), garbage);
    message->fileDidChange();
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(contentOf(PreferenceSandbox::file()), garbage);
}

} // namespace
} // namespace orlimo
