#include "capture/Message.h"

#include "capture/PreferenceKeys.h"
#include "tests/capture/MessageTestBase.h"
#include "tests/capture/PrivateHome.h"
#include "tests/capture/RecordingPasteboard.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/stores/ProcessLifetimeDatabase.h"
#include "tests/capture/stores/StoreFiles.h"
#include "tests/support/Await.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/watch/SystemWatchServices.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

namespace orlimo {

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

class MessageTest : public MessageTestBase
{
protected:
    /// A folder that a test has the program take for the user's Library folder.
    std::optional<std::filesystem::path> reportedLibrary = library.path();

    /// The host with that folder in it.
    [[nodiscard]] CaptureServices servicesWithReportedLibrary()
    {
        CaptureServices changed = services();
        changed.libraryFolder = [this] { return reportedLibrary; };
        return changed;
    }

    [[nodiscard]] CaptureServices servicesWithPasteboard(Pasteboard& pasteboard) const
    {
        const CaptureServices real = services();
        return {
            .database = real.database,
            .userDefaults = real.userDefaults,
            .pasteboard = pasteboard,
            .libraryFolder = real.libraryFolder,
            .makeFileMonitor = real.makeFileMonitor,
        };
    }
};

// Creation.

TEST_F(MessageTest, IsCreatedEmptyAndSilent)
{
    const CaptureServices given = services();
    const OutputCapture capture;
    const auto message = Message::create(given);
    EXPECT_EQ(message->text(), "");
    EXPECT_EQ(message->verificationCode(), "");
    EXPECT_FALSE(message->ready());
    EXPECT_EQ(message->libraryDirectory(), library.path());
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(clipboardText(), "before");
}

TEST_F(MessageTest, RemembersLibraryFolderOfItsCreation)
{
    const auto message = Message::create(servicesWithReportedLibrary());
    reportedLibrary.reset();
    EXPECT_EQ(message->libraryDirectory(), library.path());
}

TEST_F(MessageTest, MayBeCreatedWithoutLibraryFolder)
{
    reportedLibrary.reset();
    const OutputCapture capture;
    EXPECT_EQ(Message::create(servicesWithReportedLibrary())->libraryDirectory(), std::nullopt);
    EXPECT_EQ(capture.text(), "");
}

// The watch.

TEST_F(MessageTest, WatchesTheLog)
{
    CaptureServices given = services();
    std::vector<std::filesystem::path> watched;
    given.makeFileMonitor = [&watched, make = given.makeFileMonitor](const auto& file) {
        watched.push_back(file);
        return make(file);
    };
    const auto message = Message::create(given);
    const OutputCapture capture;
    EXPECT_TRUE(message->registFileObserver());
    EXPECT_TRUE(message->ready());
    EXPECT_THAT(watched, ElementsAre(log()));
    EXPECT_THAT(
        capture.lines(),
        ElementsAre("registFileObserver", "init file monitor", "file access allowed"));
}

TEST_F(MessageTest, LooksForLibraryFolderAgainBeforeItWatches)
{
    const TemporaryFolder other;
    reportedLibrary = other.path();
    const auto message = Message::create(servicesWithReportedLibrary());
    reportedLibrary = library.path();
    const OutputCapture capture;
    EXPECT_TRUE(message->registFileObserver());
    EXPECT_EQ(message->libraryDirectory(), other.path());
}

TEST_F(MessageTest, LogThatIsMissingIsNotAllowed)
{
    const TemporaryFolder withoutStore;
    reportedLibrary = withoutStore.path();
    const auto message = Message::create(servicesWithReportedLibrary());
    const OutputCapture capture;
    EXPECT_FALSE(message->registFileObserver());
    EXPECT_FALSE(message->ready());
    EXPECT_EQ(message->checkMessages(), std::nullopt);
    EXPECT_EQ(message->verificationCode(), "");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "registFileObserver",
            "init file monitor",
            "file access not allowed",
            "not ready to access disk"));
}

TEST_F(MessageTest, FailedWatchIsNotRetried)
{
    const TemporaryFolder withoutStore;
    reportedLibrary = withoutStore.path();
    store.appendText("Your code is 482913");
    const auto message = Message::create(servicesWithReportedLibrary());
    {
        const OutputCapture swallowed;
        EXPECT_FALSE(message->registFileObserver());
    }
    reportedLibrary = library.path();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), std::nullopt);
    message->fileDidChange();
    EXPECT_THAT(
        capture.lines(), ElementsAre("not ready to access disk", "not ready to access disk"));
    EXPECT_EQ(clipboardText(), "before");
}

TEST_F(MessageTest, LaterWatchThatFailsRefusesChecksAgain)
{
    store.appendText("Your code is 482913");
    const auto message = watching(servicesWithReportedLibrary());
    const TemporaryFolder withoutStore;
    reportedLibrary = withoutStore.path();
    {
        const OutputCapture swallowed;
        EXPECT_EQ(message->checkMessages(), "482913");
    }
    const OutputCapture capture;
    EXPECT_FALSE(message->registFileObserver());
    EXPECT_FALSE(message->ready());
    EXPECT_EQ(message->checkMessages(), std::nullopt);
    EXPECT_EQ(message->verificationCode(), "482913") << "the last value stays";
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "registFileObserver",
            "init file monitor",
            "file access not allowed",
            "not ready to access disk"));
}

TEST_F(MessageTest, LaterWatchThatSucceedsAllowsChecks)
{
    const TemporaryFolder withoutStore;
    reportedLibrary = withoutStore.path();
    const auto message = Message::create(servicesWithReportedLibrary());
    const OutputCapture swallowed;
    EXPECT_FALSE(message->registFileObserver());
    reportedLibrary = library.path();
    EXPECT_TRUE(message->registFileObserver());
    EXPECT_TRUE(message->ready());
}

// Checks.

TEST_F(MessageTest, ChecksAreRefusedUntilTheStoreIsWatched)
{
    store.appendText("Your code is 482913");
    const auto message = Message::create(services());
    int changes = 0;
    QObject::connect(message.get(), &Message::objectWillChange, [&changes] { ++changes; });
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), std::nullopt);
    message->fileDidChange();
    EXPECT_EQ(message->verificationCode(), "");
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(clipboardText(), "before");
    EXPECT_THAT(
        capture.lines(), ElementsAre("not ready to access disk", "not ready to access disk"));
}

TEST_F(MessageTest, CodeOfNewestMessageIsPublished)
{
    store.appendText("Your old code is 11111");
    store.appendText("Your code is 482913");
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), "482913");
    EXPECT_EQ(message->verificationCode(), "482913");
    EXPECT_EQ(clipboardText(), "before") << "a check copies nothing";
    EXPECT_THAT(
        capture.lines(),
        ElementsAre("ready to access disk", "Your code is 482913", R"(Found numbers: ["482913"])"));
}

TEST_F(MessageTest, EmptyStoreHasNoCode)
{
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), std::nullopt);
    EXPECT_EQ(message->verificationCode(), "No Code");
    EXPECT_THAT(capture.lines(), ElementsAre("ready to access disk"));
}

TEST_F(MessageTest, CodeThatIsGoneIsNotPublishedAnyLonger)
{
    store.appendText("Your code is 482913");
    const auto message = watching();
    const OutputCapture swallowed;
    EXPECT_EQ(message->checkMessages(), "482913");
    store.run("DELETE FROM message");
    EXPECT_EQ(message->checkMessages(), std::nullopt);
    EXPECT_EQ(message->verificationCode(), "No Code");
}

TEST_F(MessageTest, CodeOfSecondNewestMessageIsPublishedAndCopied)
{
    store.appendText("Your code is 482913");
    store.appendText("See you at 8");
    const auto message = watching();
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_EQ(message->verificationCode(), "482913");
    EXPECT_EQ(clipboardText(), "482913");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk",
            "See you at 8",
            "Your code is 482913",
            R"(Found numbers: ["482913"])",
            "file changed!! at message: code? 482913"));
}

TEST_F(MessageTest, CodeOfTenthNewestMessageIsPublished)
{
    store.appendText("Your code is 482913");
    Lines expected{"ready to access disk"};
    for (int number = 9; number > 0; --number) {
        store.appendText("message " + std::to_string(10 - number));
        expected.push_back("message " + std::to_string(number));
    }
    expected.insert(expected.end(), {"Your code is 482913", R"(Found numbers: ["482913"])"});
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), "482913");
    EXPECT_EQ(capture.lines(), expected);
}

TEST_F(MessageTest, CodeOfEleventhNewestMessageIsNotFound)
{
    store.appendText("Your code is 482913");
    Lines expected{"ready to access disk"};
    for (int number = 10; number > 0; --number) {
        store.appendText("message " + std::to_string(11 - number));
        expected.push_back("message " + std::to_string(number));
    }
    const auto message = watching();
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_EQ(message->verificationCode(), "No Code");
    EXPECT_EQ(clipboardText(), "before");
    EXPECT_EQ(capture.lines(), expected);
}

TEST_F(MessageTest, EmptyTextIsUsedAndItsBodyIsNotDecoded)
{
    store.appendText("Your code is 482913");
    store.append({.text = "", .attributedBody = mutableStringBody("Your code is 99999")});
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), "482913");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk", "", "Your code is 482913", R"(Found numbers: ["482913"])"));
}

TEST_F(MessageTest, TextIsPreferredToBody)
{
    store.append(
        {.text = "Your code is 482913", .attributedBody = mutableStringBody("Your code is 99999")});
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), "482913");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre("ready to access disk", "Your code is 482913", R"(Found numbers: ["482913"])"));
}

TEST_F(MessageTest, BodyIsDecodedWhereTextIsAbsent)
{
    store.appendBody(mutableStringBody("Your code is 482913"));
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), "482913");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk",
            "first not 129 19",
            "Your code is 482913",
            R"(Found numbers: ["482913"])"));
}

TEST_F(MessageTest, LongBodyIsDecodedWhereTextIsAbsent)
{
    const std::string words = "Your code is 482913" + std::string(200, '.');
    store.appendBody(mutableStringBody(words));
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), "482913");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre("ready to access disk", "first 129", words, R"(Found numbers: ["482913"])"));
}

TEST_F(MessageTest, BodyThatYieldsNothingIsSkipped)
{
    store.appendText("Your code is 482913");
    store.appendBody(immutableStringBody("Your code is 99999"));
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), "482913");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk",
            "first not 129 1",
            "Your code is 482913",
            R"(Found numbers: ["482913"])"));
}

TEST_F(MessageTest, OlderMessagesAreNotExamined)
{
    // The older one would stop the program.
    store.appendBody("no archive at all");
    store.appendText("Your code is 482913");
    const auto message = watching();
    const OutputCapture swallowed;
    EXPECT_EQ(message->checkMessages(), "482913");
}

TEST_F(MessageTest, FourDigitsCountAsThePreferenceSays)
{
    store.appendText("Your code is 482913");
    store.appendText("Your code is 1234");
    const auto message = watching();
    const OutputCapture swallowed;
    EXPECT_EQ(message->checkMessages(), "482913");
    defaults.setBool(true, preference::fourDigitInclude);
    EXPECT_EQ(message->checkMessages(), "1234");
    defaults.setBool(false, preference::fourDigitInclude);
    EXPECT_EQ(message->checkMessages(), "482913");
}

TEST_F(MessageTest, DigitsOfOtherScriptsAreCopiedAsTheyAre)
{
    store.appendText("رمز التحقق ٤٨٢٩١٣");
    const auto message = watching();
    const OutputCapture swallowed;
    message->fileDidChange();
    EXPECT_EQ(message->verificationCode(), "٤٨٢٩١٣");
    EXPECT_EQ(clipboardText(), "٤٨٢٩١٣");
}

// Published properties.

TEST_F(MessageTest, ObserversAreToldBeforeEachAssignment)
{
    const auto message = watching();
    Lines seen;
    QObject::connect(message.get(), &Message::objectWillChange, [&] {
        seen.push_back("[" + message->verificationCode() + "]");
    });
    const OutputCapture swallowed;
    message->checkMessages();
    message->checkMessages();
    store.appendText("Your code is 482913");
    message->checkMessages();
    message->checkMessages();
    message->fileDidChange();
    EXPECT_THAT(seen, ElementsAre("[]", "[No Code]", "[No Code]", "[482913]", "[482913]"));
    EXPECT_EQ(message->verificationCode(), "482913");
}

TEST_F(MessageTest, ViewsMayAssignThePublishedProperties)
{
    const auto message = Message::create(services());
    Lines seen;
    QObject::connect(message.get(), &Message::objectWillChange, [&] {
        seen.push_back(message->text() + "," + message->verificationCode());
    });
    message->setText("a");
    message->setText("a");
    message->setVerificationCode("b");
    message->setVerificationCode("b");
    EXPECT_THAT(seen, ElementsAre(",", "a,", "a,", "a,b"));
    EXPECT_EQ(message->text(), "a");
    EXPECT_EQ(message->verificationCode(), "b");
}

TEST_F(MessageTest, TextStaysEmpty)
{
    store.appendText("Your code is 482913");
    const auto message = watching();
    const OutputCapture swallowed;
    message->checkMessages();
    message->fileDidChange();
    EXPECT_EQ(message->text(), "");
}

// Changes of the store.

TEST_F(MessageTest, ChangeIsIgnoredWhileCapturingIsOff)
{
    store.appendText("Your code is 482913");
    const auto message = watching();
    int changes = 0;
    QObject::connect(message.get(), &Message::objectWillChange, [&changes] { ++changes; });
    defaults.setBool(false, preference::capturingEnabled);
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(message->verificationCode(), "");
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(clipboardText(), "before");

    EXPECT_EQ(message->checkMessages(), "482913") << "a direct check does not ask";
    EXPECT_EQ(message->verificationCode(), "482913");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(clipboardText(), "before");
}

TEST_F(MessageTest, CapturingSwitchedOffWhileTheProgramRunsIsSeenAtTheNextChange)
{
    store.appendText("Your code is 482913");
    const auto message = watching();
    const OutputCapture swallowed;
    message->fileDidChange();
    EXPECT_EQ(clipboardText(), "482913");
    defaults.setBool(false, preference::capturingEnabled);
    store.appendText("Your code is 555555");
    message->fileDidChange();
    EXPECT_EQ(clipboardText(), "482913");
    EXPECT_EQ(message->verificationCode(), "482913");
    defaults.setBool(true, preference::capturingEnabled);
    message->fileDidChange();
    EXPECT_EQ(clipboardText(), "555555");
}

TEST_F(MessageTest, SameCodeIsCopiedAtEachChange)
{
    store.appendText("Your code is 482913");
    const auto message = watching();
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_EQ(clipboardText(), "482913");
    setClipboardText("something else");
    message->fileDidChange();
    EXPECT_EQ(clipboardText(), "482913");
    const Lines once{
        "ready to access disk",
        "Your code is 482913",
        R"(Found numbers: ["482913"])",
        "file changed!! at message: code? 482913"};
    Lines twice = once;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_EQ(capture.lines(), twice);
}

TEST_F(MessageTest, PreviousContentsOfThePasteboardAreGone)
{
    auto* const previous = new QMimeData; // the clipboard's from the next line on
    QGuiApplication::clipboard()->setMimeData(previous);
    previous->setHtml(QStringLiteral("<b>before</b>"));
    previous->setData(QStringLiteral("application/x-before"), "before");
    store.appendText("Your code is 482913");
    const auto message = watching();
    const OutputCapture swallowed;
    message->fileDidChange();
    const QMimeData* const present = QGuiApplication::clipboard()->mimeData();
    EXPECT_FALSE(present->hasHtml());
    EXPECT_FALSE(present->hasFormat(QStringLiteral("application/x-before")));
    EXPECT_EQ(present->text(), QStringLiteral("482913"));
}

TEST_F(MessageTest, OnePlainTextTypeIsDeclaredBeforeTheStringIsSet)
{
    store.appendText("Your code is 482913");
    RecordingPasteboard pasteboard;
    const auto message = watching(servicesWithPasteboard(pasteboard));
    const OutputCapture swallowed;
    message->checkMessages();
    EXPECT_THAT(pasteboard.calls, IsEmpty());
    message->fileDidChange();
    message->fileDidChange();
    EXPECT_THAT(
        pasteboard.calls,
        ElementsAre(
            "declare string", "set 482913 as string", "declare string", "set 482913 as string"));
}

TEST_F(MessageTest, PropertyIsWhatIsCopied)
{
    store.appendText("Your code is 482913");
    RecordingPasteboard pasteboard;
    const auto message = watching(servicesWithPasteboard(pasteboard));
    pasteboard.onDeclared = [&] { message->setVerificationCode("777777"); };
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_THAT(pasteboard.calls, ElementsAre("declare string", "set 777777 as string"));
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk",
            "Your code is 482913",
            R"(Found numbers: ["482913"])",
            "file changed!! at message: code? 482913"));
}

TEST_F(MessageTest, ChangeWithoutCodeLeavesThePasteboardAlone)
{
    store.appendText("See you at 8");
    const auto message = watching();
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_EQ(message->verificationCode(), "No Code");
    EXPECT_EQ(clipboardText(), "before");
    EXPECT_THAT(capture.lines(), ElementsAre("ready to access disk", "See you at 8"));
}

TEST_F(MessageTest, StoreIsUnchangedAfterManyChecks)
{
    for (int number = 0; number < 20; ++number) {
        store.appendText("See you at " + std::to_string(number));
        store.appendBody(mutableStringBody("See you at " + std::to_string(number)));
    }
    store.appendText("Your code is 482913");
    const auto message = watching();
    const auto before = storeFiles(library.path());
    const OutputCapture swallowed;
    for (int check = 0; check < 100; ++check) {
        ASSERT_EQ(message->checkMessages(), "482913");
        message->fileDidChange();
    }
    EXPECT_TRUE(storeFiles(library.path()) == before);
    EXPECT_THAT(
        namesIn(library.path() / "Messages"), ElementsAre("chat.db", "chat.db-shm", "chat.db-wal"));
}

// Changes as the host reports them: inotify, the event loop, and a clock that the test moves.

class WatchedMessageTest : public MessageTestBase
{
protected:
    /// The program's own watch, but for the clock. The monitor outlives the test, as it would the
    /// controller.
    [[nodiscard]] CaptureServices
    servicesWithManualClock(std::weak_ptr<FileMonitor>* made = nullptr)
    {
        CaptureServices changed = services();
        changed.makeFileMonitor = [time = clock.function(), made](const auto& file) {
            WatchServices watch = systemWatchServices();
            watch.clock = time;
            auto monitor = FileMonitor::create(file, watch);
            if (made != nullptr) {
                *made = monitor;
            }
            return monitor;
        };
        return changed;
    }

    void deliverLater(const std::string& text)
    {
        clock.advance(1600ms);
        store.appendText(text);
    }

    ManualClock clock;
};

TEST_F(WatchedMessageTest, GrowthOfTheLogCopiesTheCode)
{
    const auto message = watching(servicesWithManualClock());
    const OutputCapture capture;
    deliverLater("Your code is 482913");
    EXPECT_TRUE(await([] { return clipboardText() == "482913"; }));
    EXPECT_EQ(message->verificationCode(), "482913");
    deliverLater("Your code is 555555");
    EXPECT_TRUE(await([] { return clipboardText() == "555555"; }));
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk",
            "Your code is 482913",
            R"(Found numbers: ["482913"])",
            "file changed!! at message: code? 482913",
            "ready to access disk",
            "Your code is 555555",
            R"(Found numbers: ["555555"])",
            "file changed!! at message: code? 555555"));
}

TEST_F(WatchedMessageTest, MonitorOutlivesItsCreatorsReference)
{
    std::weak_ptr<FileMonitor> monitor;
    const auto message = watching(servicesWithManualClock(&monitor));
    EXPECT_FALSE(monitor.expired());
}

/// With the throttle's decisions in the test's hands.
class ManualDecisionMessageTest : public WatchedMessageTest
{
protected:
    [[nodiscard]] CaptureServices servicesWithManualQueue()
    {
        CaptureServices changed = services();
        changed.makeFileMonitor = [time = clock.function(), &queue = decisions](const auto& file) {
            return FileMonitor::create(
                file,
                {mainQueue(), queue, time, makeFileSystemObjectSource, FileHandle::openForReading});
        };
        return changed;
    }

    /// Waits until growth is reported, and lets it be accepted and delivered.
    void deliverGrowth()
    {
        ASSERT_TRUE(await([this] { return decisions.waiting() > 0; }));
        decisions.run();
        runEventLoop(0ms);
    }

    /// Never destroyed, because a monitor may report to it to the end of the process.
    static ManualQueue& processLifetimeQueue()
    {
        static auto& kept = *new std::vector<std::unique_ptr<ManualQueue>>;
        return *kept.emplace_back(std::make_unique<ManualQueue>());
    }
    ManualQueue& decisions = processLifetimeQueue();
};

TEST_F(ManualDecisionMessageTest, CapturingSwitchedOffIgnoresReportedGrowth)
{
    const auto message = watching(servicesWithManualQueue());
    defaults.setBool(false, preference::capturingEnabled);
    const OutputCapture capture;
    deliverLater("Your code is 482913");
    deliverGrowth();
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(message->verificationCode(), "");
    EXPECT_EQ(clipboardText(), "before");

    defaults.setBool(true, preference::capturingEnabled);
    deliverLater("Your code is 555555");
    deliverGrowth();
    EXPECT_EQ(clipboardText(), "555555");
}

TEST_F(ManualDecisionMessageTest, MonitorDoesNotKeepTheControllerAlive)
{
    auto message = watching(servicesWithManualQueue());
    const std::weak_ptr<Message> observed = message;
    message.reset();
    EXPECT_TRUE(observed.expired());

    const OutputCapture capture;
    deliverLater("Your code is 482913");
    deliverGrowth();
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(clipboardText(), "before");
}

TEST_F(ManualDecisionMessageTest, ControllerThatGoesAwayAfterTheDecisionIsNotTold)
{
    auto message = watching(servicesWithManualQueue());
    const OutputCapture capture;
    deliverLater("Your code is 482913");
    ASSERT_TRUE(await([this] { return decisions.waiting() > 0; }));
    decisions.run();
    message.reset();
    runEventLoop(0ms);
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(clipboardText(), "before");
}

} // namespace

} // namespace orlimo
