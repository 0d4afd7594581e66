#include "platform/linux/DataControlClipboard.h"

#include "platform/posix/UniqueFd.h"
#include "tests/platform/OpenDescriptors.h"
#include "tests/platform/PipeReader.h"
#include "tests/platform/linux/ListeningSocket.h"
#include "tests/platform/linux/NotifierCount.h"
#include "tests/platform/linux/ScriptedCompositor.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <stdlib.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using Kind = ScriptedCompositor::Kind;
using Script = ScriptedCompositor::Script;

/// The longest that one call may take, with room for a busy machine.
constexpr std::chrono::milliseconds bound = 10s;

/// What a text is offered as, in this order; the last one is not the text.
const auto isSecretText = ElementsAre(
    "text/plain;charset=utf-8",
    "text/plain",
    "UTF8_STRING",
    "STRING",
    "TEXT",
    "x-kde-passwordManagerHint");

/// More than a pipe and a socket hold, and different everywhere.
std::string longText()
{
    std::string text;
    while (text.size() < std::size_t{4} * 1024 * 1024) {
        text += std::to_string(text.size()) + ' ';
    }
    return text;
}

class DataControlClipboardTest : public testing::Test
{
protected:
    void start(const Script& script = {}) { compositor.emplace(socket, script); }

    /// Sets the text and waits until the compositor has it, on each of so many seats.
    void set(const std::string& text, std::size_t seats = 1)
    {
        const std::size_t before = compositor->selections();
        ASSERT_TRUE(clipboard->setText(text));
        // No event loop turns: the text does not depend on one.
        const QDeadlineTimer limit(generousLimit);
        while (compositor->selections() < before + seats && !limit.hasExpired()) {
        }
        ASSERT_EQ(compositor->selections(), before + seats);
    }

    [[nodiscard]] std::string pasted(const std::string& type = "text/plain", std::size_t seat = 0)
    {
        UniqueFd end = compositor->paste(type, seat);
        if (!end) {
            return "nobody has the clipboard";
        }
        PipeReader reader(std::move(end));
        return reader.awaitEnd() ? reader.content() : "the text does not end";
    }

    [[nodiscard]] bool awaitCount(Kind kind, std::size_t count)
    {
        return await([&] { return compositor->count(kind) == count; });
    }

    TemporaryFolder folder;
    std::filesystem::path socket = folder.path() / "compositor";
    std::optional<ScriptedCompositor> compositor;
    std::optional<DataControlClipboard> clipboard{socket};
};

using DataControlOfferTest = DataControlClipboardTest;

TEST_F(DataControlOfferTest, IsThereUnderEitherPrefix)
{
    start({.offersExt = true, .offersZwlr = false});
    EXPECT_TRUE(DataControlClipboard::isOffered(socket));
    compositor.reset();
    start({.offersExt = false, .offersZwlr = true});
    EXPECT_TRUE(DataControlClipboard::isOffered(socket));
}

TEST_F(DataControlOfferTest, LeavesNothingBehind)
{
    start();
    const std::size_t before = openDescriptors();
    EXPECT_TRUE(DataControlClipboard::isOffered(socket));
    EXPECT_TRUE(await([&] { return openDescriptors() == before; }));
    EXPECT_EQ(compositor->count(Kind::manager), 0U);
}

TEST_F(DataControlOfferTest, IsNotThereWithoutTheProtocol)
{
    start({.offersExt = false, .offersZwlr = false});
    EXPECT_FALSE(DataControlClipboard::isOffered(socket));
    EXPECT_FALSE(clipboard->setText("123456"));
}

TEST_F(DataControlOfferTest, IsNotThereWithoutASeat)
{
    start({.seats = 0});
    EXPECT_FALSE(DataControlClipboard::isOffered(socket));
    EXPECT_FALSE(clipboard->setText("123456"));
    compositor->addSeat();
    EXPECT_TRUE(DataControlClipboard::isOffered(socket));
    EXPECT_TRUE(clipboard->setText("123456"));
}

TEST_F(DataControlOfferTest, IsNotThereWithoutACompositor)
{
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(DataControlClipboard::isOffered(socket));
    EXPECT_FALSE(DataControlClipboard::isOffered(std::string(4096, 'x')));
    EXPECT_FALSE(clipboard->setText("123456"));
    EXPECT_LT(time.elapsed(), 1000);
}

TEST_F(DataControlOfferTest, IsNotThereWhereACompositorHasLeftItsSocketBehind)
{
    {
        const UniqueFd left = listeningSocket(socket, 1);
    }
    EXPECT_FALSE(DataControlClipboard::isOffered(socket));
}

TEST_F(DataControlOfferTest, IsNotThereWhereACompositorDoesNotAnswer)
{
    const UniqueFd silent = listeningSocket(socket, 8);
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(DataControlClipboard::isOffered(socket));
    EXPECT_GT(time.elapsed(), 1500);
    EXPECT_LT(time.elapsed(), bound.count());
}

TEST_F(DataControlOfferTest, IsNotThereWhereACompositorTakesNoMoreConnections)
{
    const UniqueFd silent = listeningSocket(socket, 0);
    const UniqueFd taken(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_un address = socketAddress(socket);
    ASSERT_EQ(
        ::connect(taken.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(DataControlClipboard::isOffered(socket));
    EXPECT_GT(time.elapsed(), 1500);
    EXPECT_LT(time.elapsed(), bound.count());
}

/// Leads to a compositor by the variables that a session sets.
class SessionDisplayTest : public DataControlClipboardTest
{
protected:
    void SetUp() override
    {
        runtimeFolder = ::getenv("XDG_RUNTIME_DIR");
        ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    }
    void TearDown() override
    {
        ::setenv("XDG_RUNTIME_DIR", runtimeFolder.c_str(), 1);
        ::unsetenv("WAYLAND_DISPLAY");
        ::unsetenv("WAYLAND_SOCKET");
    }

    std::string runtimeFolder;
};

TEST_F(SessionDisplayTest, IsTheOneThatTheVariableNames)
{
    start();
    EXPECT_FALSE(DataControlClipboard::isOffered());
    ::setenv("WAYLAND_DISPLAY", "compositor", 1);
    EXPECT_TRUE(DataControlClipboard::isOffered());
    ::setenv("WAYLAND_DISPLAY", socket.c_str(), 1);
    EXPECT_TRUE(DataControlClipboard::isOffered());
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_TRUE(DataControlClipboard::isOffered());
    ::setenv("WAYLAND_DISPLAY", "compositor", 1);
    EXPECT_FALSE(DataControlClipboard::isOffered());
}

TEST_F(SessionDisplayTest, HasTheUsualNameWhereNoneIsSet)
{
    compositor.emplace(folder.path() / "wayland-0");
    EXPECT_TRUE(DataControlClipboard::isOffered());
    DataControlClipboard own;
    EXPECT_TRUE(own.setText("123456"));
    EXPECT_EQ(pasted(), "123456");
}

TEST_F(SessionDisplayTest, LeavesTheToolkitTheSocketThatIsMeantForIt)
{
    start();
    ::setenv("WAYLAND_SOCKET", "0", 1);
    EXPECT_TRUE(DataControlClipboard::isOffered(socket));
    EXPECT_STREQ(::getenv("WAYLAND_SOCKET"), "0");
}

TEST_F(DataControlClipboardTest, PrefersThePrefixThatAllHaveAgreedOn)
{
    start({.offersExt = true, .offersZwlr = true});
    set("123456");
    EXPECT_THAT(compositor->managers(), ElementsAre("ext_data_control_manager_v1"));
    EXPECT_EQ(pasted(), "123456");
}

TEST_F(DataControlClipboardTest, TakesTheOtherPrefixWhereItIsTheOnlyOne)
{
    start({.offersExt = false, .offersZwlr = true});
    set("123456");
    EXPECT_THAT(compositor->managers(), ElementsAre("zwlr_data_control_manager_v1"));
    EXPECT_EQ(pasted(), "123456");
    compositor->takeSelection();
    set("7777");
    EXPECT_EQ(pasted(), "7777");
}

TEST_F(DataControlClipboardTest, DoesNotConnectBeforeItIsUsed)
{
    start();
    runEventLoop(20ms);
    EXPECT_EQ(compositor->connections(), 0U);
}

TEST_F(DataControlClipboardTest, OffersPlainTextUnderAllItsNamesAndMarksItAsSecret)
{
    start();
    set("123456");
    EXPECT_THAT(compositor->types(), isSecretText);
    for (const std::string& type : compositor->types()) {
        const bool isHint = type == "x-kde-passwordManagerHint";
        EXPECT_EQ(pasted(type), isHint ? "secret" : "123456") << type;
    }
}

TEST_F(DataControlClipboardTest, GivesNothingUnderANameThatItDoesNotOffer)
{
    start();
    set("123456");
    EXPECT_EQ(pasted("image/png"), "");
}

TEST_F(DataControlClipboardTest, GivesTheTextAsItIs)
{
    start();
    using namespace std::string_literals;
    for (const auto& text : {""s, "1"s, "\u0661\u0662 e\u0301 \U0001F511\n"s, "12\0 34"s}) {
        set(text);
        EXPECT_THAT(compositor->types(), isSecretText);
        EXPECT_EQ(pasted(), text);
    }
}

TEST_F(DataControlClipboardTest, GivesALongTextToASlowReader)
{
    start();
    const std::string text = longText();
    set(text);
    PipeReader slow(compositor->paste());
    ASSERT_TRUE(slow.awaitEnd(16384));
    EXPECT_TRUE(slow.content() == text) << slow.content().size();
}

TEST_F(DataControlClipboardTest, SurvivesAReaderThatHangsUp)
{
    // The signal would end the process: it is neither ignored nor handled here.
    ASSERT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_DFL);
    start();
    set(longText());
    const std::size_t before = openDescriptors();
    {
        PipeReader reader(compositor->paste());
        ASSERT_TRUE(await([&] {
            reader.read(10);
            return !reader.content().empty();
        }));
    }
    {
        const UniqueFd never = compositor->paste();
    }
    EXPECT_TRUE(await([&] { return openDescriptors() == before; }));
    set("123456");
    EXPECT_EQ(pasted(), "123456");
}

TEST_F(DataControlClipboardTest, IsNotHeldUpByReadersThatDoNotRead)
{
    start();
    set(longText());
    const std::size_t before = openDescriptors();
    std::deque<UniqueFd> stuck;
    for (int reader = 0; reader < 100; ++reader) {
        stuck.push_back(compositor->paste());
    }
    // The last one to be hung up on: by then all have asked.
    EXPECT_TRUE(PipeReader(std::move(stuck[35])).awaitEnd());
    stuck.erase(stuck.begin() + 35);
    // All the pipes have their one end here, and a bounded number the other.
    EXPECT_TRUE(await([&] { return openDescriptors() == before + stuck.size() + 64; }));
    const NotifierCount woken;
    runEventLoop(200ms);
    EXPECT_EQ(woken.count, 0U);
    set("123456");
    EXPECT_EQ(pasted(), "123456");
}

TEST_F(DataControlClipboardTest, GivesAReaderTheTextThatItHasAskedFor)
{
    start();
    const std::string old = longText();
    set(old);
    PipeReader reader(compositor->paste());
    ASSERT_TRUE(await([&] {
        reader.read(10);
        return !reader.content().empty();
    }));
    set("123456");
    EXPECT_EQ(pasted(), "123456");
    ASSERT_TRUE(reader.awaitEnd());
    EXPECT_TRUE(reader.content() == old) << reader.content().size();
}

TEST_F(DataControlClipboardTest, GivesTheOldTextToAReaderThatAskedRightBeforeItWasReplaced)
{
    start();
    set("old");
    PipeReader reader(compositor->paste()); // the question waits in the connection
    set("new");
    ASSERT_TRUE(reader.awaitEnd());
    EXPECT_EQ(reader.content(), "old");
    EXPECT_EQ(pasted(), "new");
}

TEST_F(DataControlClipboardTest, GivesTheOldTextToAReaderThatAskedBeforeTheCompositorHadTheNewOne)
{
    start();
    set("old");
    compositor->hold();
    ASSERT_TRUE(clipboard->setText("new"));
    PipeReader reader(compositor->resumeWithPaste());
    ASSERT_TRUE(reader.awaitEnd());
    EXPECT_EQ(reader.content(), "old");
    EXPECT_EQ(pasted(), "new");
}

TEST_F(DataControlClipboardTest, FinishesATransferAfterTheCompositorHasGone)
{
    start();
    const std::string text = longText();
    set(text);
    PipeReader reader(compositor->paste());
    ASSERT_TRUE(await([&] {
        reader.read(10);
        return !reader.content().empty();
    }));
    compositor.reset();
    ASSERT_TRUE(reader.awaitEnd());
    EXPECT_TRUE(reader.content() == text) << reader.content().size();
}

TEST_F(DataControlClipboardTest, GivesEachOfManyTexts)
{
    start();
    set("first");
    const std::size_t before = openDescriptors();
    for (int number = 0; number < 200; ++number) {
        const std::string text = std::to_string(100000 + number);
        set(text);
        ASSERT_EQ(pasted(), text);
    }
    EXPECT_TRUE(await([&] { return openDescriptors() == before; }));
    EXPECT_EQ(compositor->connections(), 1U);
}

TEST_F(DataControlClipboardTest, GivesUpWhatAnotherProgramHasReplacedAndTakesItBack)
{
    start();
    set("123456");
    compositor->takeSelection();
    EXPECT_TRUE(awaitCount(Kind::source, 0));
    EXPECT_TRUE(compositor->types().empty());
    set("7777");
    EXPECT_THAT(compositor->types(), isSecretText);
    EXPECT_EQ(pasted(), "7777");
    EXPECT_EQ(compositor->connections(), 1U);
}

TEST_F(DataControlClipboardTest, GivesTheClipboardUpAtTheEnd)
{
    start();
    const std::size_t before = openDescriptors();
    set("123456");
    clipboard.reset();
    EXPECT_TRUE(await([&] { return compositor->types().empty(); }));
    for (const Kind kind : {Kind::manager, Kind::device, Kind::source, Kind::offer, Kind::seat}) {
        EXPECT_TRUE(awaitCount(kind, 0)) << static_cast<int>(kind);
    }
    EXPECT_TRUE(await([&] { return openDescriptors() == before; }));
}

TEST_F(DataControlClipboardTest, PilesNothingUp)
{
    start();
    set("first");
    for (int number = 0; number < 1000; ++number) {
        ASSERT_TRUE(clipboard->setText(std::to_string(number)));
    }
    EXPECT_TRUE(await([&] { return pasted() == "999"; }));
    EXPECT_TRUE(awaitCount(Kind::source, 1));
    EXPECT_TRUE(awaitCount(Kind::offer, 1));
    for (int number = 0; number < 1000; ++number) {
        compositor->takeSelection();
        compositor->takePrimarySelection();
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(awaitCount(Kind::source, 0));
    EXPECT_TRUE(awaitCount(Kind::offer, 2)); // one of each selection
    EXPECT_EQ(compositor->count(Kind::device), 1U);
    EXPECT_EQ(compositor->count(Kind::manager), 1U);
    EXPECT_EQ(compositor->count(Kind::seat), 1U);
    EXPECT_EQ(compositor->connections(), 1U);
}

TEST_F(DataControlClipboardTest, WithdrawsTheOldestTextsOfACompositorThatCancelsNone)
{
    start({.cancelsReplaced = false});
    for (int number = 0; number < 200; ++number) {
        set(std::to_string(number));
    }
    EXPECT_TRUE(awaitCount(Kind::source, 65));
    EXPECT_EQ(pasted(), "199");
}

TEST_F(DataControlClipboardTest, DoesNothingWhileNothingHappens)
{
    start();
    set("123456");
    EXPECT_EQ(pasted(), "123456");
    EXPECT_TRUE(awaitCount(Kind::offer, 1));
    runEventLoop(50ms);
    const std::size_t before = compositor->requests();
    const NotifierCount woken;
    runEventLoop(500ms);
    EXPECT_EQ(woken.count, 0U);
    EXPECT_EQ(compositor->requests(), before);
}

TEST_F(DataControlClipboardTest, LetsGoOfACompositorThatGoesAndFindsItAgain)
{
    const std::size_t before = openDescriptors();
    start();
    set("123456");
    compositor.reset();
    EXPECT_TRUE(await([&] { return openDescriptors() == before; }));
    const NotifierCount woken;
    runEventLoop(200ms);
    EXPECT_EQ(woken.count, 0U);
    EXPECT_FALSE(clipboard->setText("nobody is there"));
    start();
    set("7777");
    EXPECT_EQ(pasted(), "7777");
}

TEST_F(DataControlClipboardTest, ConnectsAnewWithoutHavingSeenThatItWasCutOff)
{
    start();
    set("123456");
    compositor->disconnectClients();
    set("7777"); // no turn of the event loop between the two
    EXPECT_EQ(pasted(), "7777");
    EXPECT_EQ(compositor->connections(), 2U);
}

TEST_F(DataControlClipboardTest, ConnectsAnewAfterItWasToldOfAnError)
{
    const std::size_t before = openDescriptors();
    start();
    testing::internal::CaptureStderr(); // the library says what it was told
    const std::size_t withCompositor = openDescriptors();
    set("12345");
    set("123456");
    EXPECT_TRUE(awaitCount(Kind::offer, 1)); // nothing else is on its way beside the error
    compositor->postError();
    EXPECT_TRUE(await([&] { return openDescriptors() == withCompositor; }));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("the test says so"));
    const NotifierCount woken;
    runEventLoop(100ms);
    EXPECT_EQ(woken.count, 0U);
    set("7777");
    EXPECT_EQ(pasted(), "7777");
    clipboard.reset();
    compositor.reset();
    EXPECT_TRUE(await([&] { return openDescriptors() == before; }));
}

TEST_F(DataControlClipboardTest, DoesNotWaitForEverForACompositorThatHangs)
{
    start();
    set("123456");
    compositor->hold();
    QElapsedTimer time;
    bool isTaken = true;
    for (int number = 0; isTaken && number < 100000; ++number) {
        time.start();
        isTaken = clipboard->setText(std::to_string(number));
        ASSERT_LT(time.elapsed(), bound.count());
    }
    EXPECT_FALSE(isTaken);
    compositor->resume();
    EXPECT_TRUE(clipboard->setText("7777"));
    EXPECT_TRUE(await([&] { return pasted() == "7777"; }));
}

TEST_F(DataControlClipboardTest, SetsTheClipboardOfEverySeat)
{
    start({.seats = 3});
    set("123456", 3);
    for (std::size_t seat = 0; seat < 3; ++seat) {
        EXPECT_EQ(pasted("text/plain", seat), "123456") << seat;
    }
    compositor->takeSelection(1);
    EXPECT_TRUE(awaitCount(Kind::source, 2));
    EXPECT_EQ(pasted("text/plain", 0), "123456");
    EXPECT_TRUE(compositor->types(1).empty());
    EXPECT_EQ(pasted("text/plain", 2), "123456");
    set("7777", 3);
    EXPECT_EQ(pasted("text/plain", 1), "7777");
}

TEST_F(DataControlClipboardTest, GivesItsTextToASeatThatComesLater)
{
    start();
    set("123456");
    compositor->addSeat();
    EXPECT_TRUE(await([&] { return compositor->selections() == 2; }));
    EXPECT_EQ(pasted("text/plain", 1), "123456");
    set("7777", 2);
    EXPECT_EQ(pasted("text/plain", 0), "7777");
    EXPECT_EQ(pasted("text/plain", 1), "7777");
}

TEST_F(DataControlClipboardTest, GivesNoTextToALaterSeatThatAnotherProgramHasReplaced)
{
    start();
    set("123456");
    compositor->takeSelection();
    EXPECT_TRUE(awaitCount(Kind::source, 0));
    compositor->addSeat();
    EXPECT_TRUE(awaitCount(Kind::device, 2));
    EXPECT_TRUE(compositor->types(1).empty());
    EXPECT_EQ(compositor->selections(), 1U);
}

TEST_F(DataControlClipboardTest, KeepsItsTextWhileItsOnlySeatIsReplaced)
{
    for (const std::uint32_t seatVersion : {1U, 5U, 7U}) {
        start({.seatVersion = seatVersion});
        set("123456");
        compositor->removeSeat(0);
        compositor->addSeat();
        EXPECT_TRUE(await([&] { return compositor->selections() == 2; }));
        EXPECT_EQ(pasted("text/plain", 1), "123456");
        EXPECT_EQ(compositor->count(Kind::device), 1U);
        EXPECT_EQ(compositor->count(Kind::source), 1U);
        // A seat of the first versions cannot be given up.
        EXPECT_EQ(compositor->count(Kind::seat), seatVersion < 5 ? 2U : 1U);
        EXPECT_EQ(compositor->connections(), 1U);
        compositor.reset();
        clipboard.emplace(socket);
    }
}

TEST_F(DataControlClipboardTest, SaysSoWhileThereIsNoSeat)
{
    start();
    set("123456");
    compositor->removeSeat(0);
    EXPECT_FALSE(clipboard->setText("7777"));
    compositor->addSeat();
    EXPECT_TRUE(clipboard->setText("7777"));
    EXPECT_TRUE(await([&] { return pasted("text/plain", 1) == "7777"; }));
}

TEST_F(DataControlClipboardTest, AsksForAClipboardAgainThatHasEnded)
{
    start();
    set("123456");
    compositor->finishDevices();
    EXPECT_TRUE(awaitCount(Kind::device, 0));
    EXPECT_TRUE(awaitCount(Kind::source, 0));
    EXPECT_TRUE(awaitCount(Kind::offer, 0));
    set("7777");
    EXPECT_EQ(pasted(), "7777");
    EXPECT_EQ(compositor->connections(), 1U);
}

} // namespace
} // namespace orlimo
