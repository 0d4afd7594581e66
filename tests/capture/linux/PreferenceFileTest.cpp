#include "capture/CodeExtraction.h"
#include "capture/PreferenceKeys.h"
#include "platform/files/LibraryFolder.h"
#include "tests/capture/MessageTestBase.h"
#include "tests/capture/PrivateHome.h"
#include "tests/capture/TestCaptureServices.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/watch/SystemWatchServices.h"

#include <QClipboard>
#include <QGuiApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include <unistd.h>

namespace orlimo {
namespace {

using testing::ElementsAre;

/// What the program works on: the shared reader, and the system's own services.
CaptureServices servicesOfUser()
{
    return {
        .database = Database::shared(libraryFolder),
        .userDefaults = captureUserDefaults(),
        .pasteboard = capturePasteboard(),
        .libraryFolder = libraryFolder,
        .makeFileMonitor =
            [](const auto& file) { return FileMonitor::create(file, systemWatchServices()); },
    };
}

// Capturing, on preferences as they lie in their file.

class CapturePreferences : public MessageTestBase
{};

TEST(CodeExtractionPreferences, PreferenceThatChangesBetweenCallsChangesResult)
{
    const PreferenceSandbox sandbox;
    UserDefaults& defaults = standardUserDefaults();
    const OutputCapture capture;

    EXPECT_EQ(extractCode("Code 1234", defaults), std::nullopt) << "an absent preference is off";
    defaults.setBool(true, preference::fourDigitInclude);
    EXPECT_EQ(extractCode("Code 1234", defaults), "1234");
    defaults.setBool(false, preference::fourDigitInclude);
    EXPECT_EQ(extractCode("Code 1234", defaults), std::nullopt);
    writeFile(PreferenceSandbox::file(), "[General]\nfourDigitInclude=1\n");
    EXPECT_EQ(extractCode("Code 1234", defaults), "1234") << "another program has changed it";

    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "Code 1234",
            "Code 1234",
            R"(Found numbers: ["1234"])",
            "Code 1234",
            "Code 1234",
            R"(Found numbers: ["1234"])"));
}

TEST_F(CapturePreferences, AbsentOnesIgnoresChanges)
{
    store.appendText("Your code is 482913");
    const auto message = watching();
    std::filesystem::remove(PreferenceSandbox::file());
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_EQ(capture.text(), "");
}

TEST_F(CapturePreferences, DamagedOnesSwitchCapturingOff)
{
    store.appendText("Your code is 482913");
    const std::string garbage = "\x01\x02 no preferences \xFF\n[[[\n=\n";
    writeFile(PreferenceSandbox::file(), garbage);
    const auto message = watching();
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(contentOf(PreferenceSandbox::file()), garbage);
}

TEST_F(CapturePreferences, SwitchedOffOnesSwitchCapturingOffAlsoWhereTheyCannotBeStored)
{
    store.appendText("Your code is 482913");
    const auto message = watching();
    setClipboardText("before");
    // Where there is a folder no lock can be made, and without it nothing is written.
    const auto lock = PreferenceSandbox::file().string() + ".lock";
    std::filesystem::create_directory(lock);
    const OutputCapture capture;
    defaults.setBool(false, preference::capturingEnabled);
    message->fileDidChange();
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(clipboardText(), "before");
    std::filesystem::remove(lock);
    // Stored, so that it is not kept beyond this test.
    defaults.setBool(false, preference::capturingEnabled);
    EXPECT_THAT(contentOf(PreferenceSandbox::file()), testing::HasSubstr("capturingEnabled=false"));
}

TEST(CapturePreferencesDeathTest, EveryOneHasTheSharedReaderAndThePlatformsOwn)
{
    EXPECT_EXIT(
        {
            ::dup2(STDERR_FILENO, STDOUT_FILENO);
            switchToPrivateHome();
            StoreWriter store(libraryFolder().value_or(""));
            store.appendText("Your code is 482913");
            standardUserDefaults().setBool(true, preference::capturingEnabled);
            const auto first = Message::create(servicesOfUser());
            const auto second = Message::create(servicesOfUser());
            first->registFileObserver();
            second->registFileObserver();
            first->fileDidChange();
            (void)second->checkMessages();
            const bool copied = QGuiApplication::clipboard()->text() == QStringLiteral("482913");
            ::_exit(copied && first->libraryDirectory() == libraryFolder() ? 0 : 1);
        },
        testing::ExitedWithCode(0),
        testing::MatchesRegex("Database init\n"
                              "database connected!!\n"
                              "registFileObserver\n"
                              "init file monitor\n"
                              "file access allowed\n"
                              "registFileObserver\n"
                              "init file monitor\n"
                              "file access allowed\n"
                              "ready to access disk\n"
                              "Your code is 482913\n"
                              "Found numbers: \\[\"482913\"\\]\n"
                              "file changed!! at message: code\\? 482913\n"
                              "ready to access disk\n"
                              "Your code is 482913\n"
                              "Found numbers: \\[\"482913\"\\]\n"));
}

} // namespace
} // namespace orlimo
