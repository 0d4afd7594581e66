#include "capture/Message.h"

#include "capture/Preferences.h"
#include "tests/capture/MessageTestBase.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cerrno>
#include <chrono>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

#include <dlfcn.h>

namespace {

bool isSqliteOutOfMemory = false;

} // namespace

/// Takes precedence over the library's function of the same name, in this program only.
const unsigned char* sqlite3_column_text(sqlite3_stmt* statement, int column)
{
    using Function = const unsigned char* (*)(sqlite3_stmt*, int);
    static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "sqlite3_column_text"));
    return isSqliteOutOfMemory ? nullptr : real(statement, column);
}

namespace orlimo {

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

constexpr const char* refused = "not ready to access disk";

class MessageTest : public MessageTestBase
{
protected:
    /// Services whose Library folder is what `reportedLibrary` is at that moment.
    [[nodiscard]] CaptureServices servicesWithReportedLibrary()
    {
        CaptureServices changed = services();
        changed.libraryFolder = [this] { return reportedLibrary; };
        return changed;
    }

    TemporaryFolder other;
    std::optional<std::filesystem::path> reportedLibrary = library.path();
};

TEST_F(MessageTest, NewControllerIsEmptyAndSilent)
{
    const CaptureServices given = servicesWithReportedLibrary();
    const OutputCapture capture;
    const auto message = Message::create(given);
    reportedLibrary.reset();
    EXPECT_EQ(message->text(), "");
    EXPECT_EQ(message->verificationCode(), "");
    EXPECT_FALSE(message->ready());
    EXPECT_EQ(message->libraryDirectory(), library.path()) << "the folder at construction";
    EXPECT_EQ(Message::create(given)->libraryDirectory(), std::nullopt);
    EXPECT_EQ(capture.text(), "");
}

// Registration.

TEST_F(MessageTest, RegistrationWatchesTheLogInThePresentLibraryFolder)
{
    reportedLibrary = other.path();
    CaptureServices given = servicesWithReportedLibrary();
    std::vector<std::filesystem::path> watched;
    given.makeFileMonitor = [&watched, make = given.makeFileMonitor](const auto& file) {
        watched.push_back(file);
        return make(file);
    };
    const auto message = Message::create(given);
    reportedLibrary = library.path();
    const OutputCapture capture;
    EXPECT_TRUE(message->registFileObserver());
    EXPECT_TRUE(message->ready());
    EXPECT_THAT(watched, ElementsAre(library.path() / "Messages/chat.db-wal"));
    EXPECT_THAT(
        capture.lines(),
        ElementsAre("registFileObserver", "init file monitor", "file access allowed"));
}

TEST_F(MessageTest, ChecksAreRefusedUnlessLastRegistrationSucceeded)
{
    store.appendText("Your code is 482913");
    const auto message = Message::create(servicesWithReportedLibrary());
    int changes = 0;
    QObject::connect(message.get(), &Message::objectWillChange, [&changes] { ++changes; });
    const OutputCapture capture;
    const auto expectRefused = [&] {
        EXPECT_FALSE(message->ready());
        EXPECT_EQ(message->checkMessages(), std::nullopt);
        message->fileDidChange();
    };
    expectRefused();
    reportedLibrary = other.path();
    EXPECT_FALSE(message->registFileObserver());
    reportedLibrary = library.path();
    expectRefused();
    EXPECT_EQ(message->verificationCode(), "");
    EXPECT_EQ(changes, 0);

    EXPECT_TRUE(message->registFileObserver());
    EXPECT_EQ(message->checkMessages(), "482913");
    reportedLibrary = other.path();
    EXPECT_FALSE(message->registFileObserver());
    expectRefused();
    EXPECT_EQ(message->verificationCode(), "482913") << "the last value stays";
    EXPECT_THAT(clipboard.calls, IsEmpty());
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            refused,
            refused,
            "registFileObserver",
            "init file monitor",
            "file access not allowed",
            refused,
            refused,
            "registFileObserver",
            "init file monitor",
            "file access allowed",
            "ready to access disk",
            "Your code is 482913",
            R"(Found numbers: ["482913"])",
            "registFileObserver",
            "init file monitor",
            "file access not allowed",
            refused,
            refused));
}

// Checks.

struct CheckCase
{
    std::string name;
    std::vector<StoreWriter::Row> rows; ///< oldest first
    std::optional<std::string> code;
    Lines lines; ///< between "ready to access disk" and the numbers found
    friend void PrintTo(const CheckCase& given, std::ostream* stream) { *stream << given.name; }
};

/// A message with a code, and `number` later ones without.
std::vector<StoreWriter::Row> codeBefore(std::size_t number)
{
    std::vector<StoreWriter::Row> rows(number + 1, {.text = "Hello"});
    rows.front().text = "Your code is 482913";
    return rows;
}

/// The texts of `number` messages without a code, and what follows.
Lines hellosBefore(std::size_t number, const Lines& following)
{
    Lines lines(number, "Hello");
    lines.insert(lines.end(), following.begin(), following.end());
    return lines;
}

const std::string longWords = "Your code is 482913" + std::string(200, '.');
const std::string hugeText(16'000'000, 'x');

class MessageCheck : public MessageTest, public testing::WithParamInterface<CheckCase>
{};

TEST_P(MessageCheck, PublishesNewestCodeAndCopiesItOnlyAfterChange)
{
    const auto& [name, rows, code, between] = GetParam();
    for (const StoreWriter::Row& row : rows) {
        store.append(row);
    }
    Lines expected{"ready to access disk"};
    expected.insert(expected.end(), between.begin(), between.end());
    if (code) {
        expected.push_back("Found numbers: [\"" + *code + "\"]");
    }
    const auto message = watching();
    {
        const OutputCapture capture;
        EXPECT_EQ(message->checkMessages(), code);
        EXPECT_TRUE(capture.lines() == expected) << capture.text().substr(0, 2000);
    }
    EXPECT_EQ(message->verificationCode(), code.value_or("No Code"));
    EXPECT_THAT(clipboard.calls, IsEmpty()) << "a check copies nothing";

    Lines calls;
    if (code) {
        expected.push_back("file changed!! at message: code? " + *code);
        calls = {"declare string", "set " + *code + " as string"};
    }
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_TRUE(capture.lines() == expected) << capture.text().substr(0, 2000);
    EXPECT_EQ(message->verificationCode(), code.value_or("No Code"));
    EXPECT_EQ(clipboard.calls, calls);
    EXPECT_EQ(message->text(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Stores,
    MessageCheck,
    testing::Values(
        CheckCase{"Empty", {}, {}, {}},
        CheckCase{
            "OlderMessageIsNotExamined",
            {{.attributedBody = "no archive at all"}, {.text = "Your code is 482913"}},
            "482913",
            {"Your code is 482913"}},
        CheckCase{"SecondNewest", codeBefore(1), "482913", {"Hello", "Your code is 482913"}},
        CheckCase{"TenthNewest", codeBefore(9), "482913", hellosBefore(9, {"Your code is 482913"})},
        CheckCase{"EleventhNewest", codeBefore(10), {}, hellosBefore(10, {})},
        CheckCase{
            "EmptyTextIsUsedAndItsBodyIgnored",
            {{.text = "Your code is 482913"},
             {.text = "", .attributedBody = mutableStringBody("Your code is 99999")}},
            "482913",
            {"", "Your code is 482913"}},
        CheckCase{
            "Body",
            {{.attributedBody = mutableStringBody("Your code is 482913")}},
            "482913",
            {"first not 129 19", "Your code is 482913"}},
        CheckCase{
            "LongBody",
            {{.attributedBody = mutableStringBody(longWords)}},
            "482913",
            {"first 129", longWords}},
        CheckCase{
            "BodyThatYieldsNothingIsSkipped",
            {{.text = "Your code is 482913"},
             {.attributedBody = immutableStringBody("Your code is 99999")}},
            "482913",
            {"first not 129 1", "Your code is 482913"}},
        CheckCase{
            "DigitsOfAnotherScript",
            {{.text = "رمز التحقق ٤٨٢٩١٣"}},
            "٤٨٢٩١٣",
            {"رمز التحقق ٤٨٢٩١٣"}},
        CheckCase{
            "HugeText",
            {{.text = "Your code is 482913"}, {.text = hugeText}},
            "482913",
            {hugeText, "Your code is 482913"}}),
    [](const auto& given) { return given.param.name; });

TEST_F(MessageTest, PreferencesAreReadAtEachChange)
{
    store.appendText("Your code is 482913");
    store.appendText("Your code is 1234");
    const auto message = watching();
    int changes = 0;
    QObject::connect(message.get(), &Message::objectWillChange, [&changes] { ++changes; });
    const OutputCapture capture;
    defaults.setBool(false, preference::capturingEnabled);
    message->fileDidChange();
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(message->verificationCode(), "");
    EXPECT_EQ(changes, 0);

    EXPECT_EQ(message->checkMessages(), "482913") << "a direct check ignores the preference";
    EXPECT_EQ(message->verificationCode(), "482913");
    EXPECT_THAT(clipboard.calls, IsEmpty());

    defaults.setBool(true, preference::capturingEnabled);
    defaults.setBool(true, preference::fourDigitInclude);
    message->fileDidChange();
    EXPECT_EQ(clipboard.calls.back(), "set 1234 as string");
    defaults.setBool(false, preference::fourDigitInclude);
    message->fileDidChange();
    EXPECT_EQ(clipboard.calls.back(), "set 482913 as string");
}

// What is published and copied.

TEST_F(MessageTest, ObserversAreNotifiedBeforeEachAssignment)
{
    const auto message = watching();
    Lines seen;
    QObject::connect(message.get(), &Message::objectWillChange, [&] {
        seen.push_back(message->text() + "," + message->verificationCode());
    });
    const OutputCapture swallowed;
    message->checkMessages();
    message->checkMessages();
    store.appendText("Your code is 482913");
    message->checkMessages();
    message->fileDidChange();
    message->setText("a");
    message->setVerificationCode("b");
    EXPECT_THAT(seen, ElementsAre(",", ",No Code", ",No Code", ",482913", ",482913", "a,482913"));
    EXPECT_EQ(message->text(), "a");
    EXPECT_EQ(message->verificationCode(), "b");
}

TEST_F(MessageTest, SameCodeIsCopiedAtEachChangeAsPublishedByThen)
{
    store.appendText("Your code is 482913");
    const auto message = watching();
    const OutputCapture capture;
    message->fileDidChange();
    clipboard.onDeclared = [&] { message->setVerificationCode("777777"); };
    message->fileDidChange();
    EXPECT_THAT(
        clipboard.calls,
        ElementsAre(
            "declare string", "set 482913 as string", "declare string", "set 777777 as string"));
    EXPECT_EQ(capture.lines().back(), "file changed!! at message: code? 482913");
}

TEST_F(MessageTest, EachReportedGrowthCopiesTheCodeUntilRelease)
{
    auto message = watching();
    const auto deliver = [&](const std::string& text) {
        watch.clock.advance(1600ms);
        store.appendText(text);
        watch.source->fire(vnodeExtend);
        watch.decisions.run();
    };
    const OutputCapture capture;
    for (const std::string code : {"482913", "555555"}) {
        deliver("Your code is " + code);
        watch.main.run();
        EXPECT_EQ(clipboard.calls.back(), "set " + code + " as string");
        EXPECT_EQ(message->verificationCode(), code);
    }
    const std::string before = capture.text();
    deliver("Your code is 666666");
    const std::weak_ptr<Message> observed = message;
    message.reset();
    EXPECT_TRUE(observed.expired()) << "the monitor keeps its delegate alive";
    watch.main.run();
    EXPECT_EQ(capture.text(), before);
    EXPECT_EQ(clipboard.calls.size(), 4U);
}

// Faults.

using MessageFaultTest = MessageTest;

TEST_F(MessageFaultTest, WatchRefusedBySystemIsNotAllowed)
{
    CaptureServices given = services();
    given.makeFileMonitor = [](const auto&) -> std::shared_ptr<FileMonitor> {
        throw std::system_error(ENOSPC, std::generic_category(), "too many watches");
    };
    const auto message = Message::create(given);
    const OutputCapture capture;
    EXPECT_FALSE(message->registFileObserver());
    EXPECT_FALSE(message->ready());
    EXPECT_THAT(capture.lines(), ElementsAre("registFileObserver", "file access not allowed"));
}

TEST_F(MessageFaultTest, UnreadableStoreHasNoCode)
{
    const auto message = watching();
    store.run("DROP TABLE message");
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_EQ(message->verificationCode(), "No Code");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk", "error preparing fetch limit : v1no such table: message"));
    EXPECT_THAT(clipboard.calls, IsEmpty());
}

using MessageFaultDeathTest = MessageTest;

TEST_F(MessageFaultDeathTest, AbsentLibraryFolderIsFatal)
{
    expectFatalStop(
        [this] {
            const auto message = Message::create(servicesWithReportedLibrary());
            reportedLibrary.reset();
            message->registFileObserver();
        },
        {"registFileObserver"},
        {"capture/Message.cpp", "the user has no Library folder"});
}

TEST_F(MessageFaultDeathTest, MessageWithoutTextAndBodyIsFatal)
{
    store.append({});
    const auto message = watching();
    (void)database.fetchMessages(10); // SQLite reads the schema with the same function
    expectFatalStop(
        [&] {
            isSqliteOutOfMemory = true;
            message->checkMessages();
        },
        {"ready to access disk"},
        {"capture/Message.cpp", "a message has neither text nor body"});
}

} // namespace

} // namespace orlimo
