#include "platform/clipboard/linux/DataControlClipboard.h"

#include "platform/files/UniqueFd.h"
#include "tests/platform/clipboard/linux/ListeningSocket.h"
#include "tests/platform/clipboard/linux/NotifierCount.h"
#include "tests/platform/clipboard/linux/ScriptedCompositor.h"
#include "tests/platform/files/OpenDescriptors.h"
#include "tests/platform/process/PipeReader.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
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
#include <thread>
#include <utility>

#include <stdlib.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using Kind = ScriptedCompositor::Kind;
using Outcome = DataControlClipboard::Outcome;
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

    /// Sets the text and does not wait for what comes of it, which `outcome` then says.
    void request(const std::string& text)
    {
        outcome.reset();
        QElapsedTimer time;
        time.start();
        clipboard->setText(text, [this](Outcome what) {
            EXPECT_FALSE(outcome.has_value()) << "once for each text";
            outcome = what;
        });
        EXPECT_LT(time.elapsed(), 1000) << "a text is never waited for";
    }

    /// Sets the text and waits for what comes of it.
    [[nodiscard]] std::optional<Outcome> outcomeOf(const std::string& text)
    {
        request(text);
        (void)await([this] { return outcome.has_value(); });
        return outcome;
    }

    /// Has the event loop run, and sees that it neither comes to a result nor is woken.
    void expectNoWakeUp(std::chrono::milliseconds span = 300ms)
    {
        runEventLoop(20ms);
        const NotifierCount woken;
        runEventLoop(span);
        EXPECT_EQ(woken.count, 0U);
        EXPECT_EQ(outcome, std::nullopt);
    }

    /// Sets the text and waits until the compositor has it, on each of so many seats.
    void set(const std::string& text, std::size_t seats = 1)
    {
        const std::size_t before = compositor->selections();
        ASSERT_EQ(outcomeOf(text), Outcome::sent);
        // No event loop turns from here on: the text does not depend on one.
        const QDeadlineTimer limit(defaultTimeout);
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
    std::optional<Outcome> outcome;
};

/// Whether the compositor offers data control.
class DataControlOfferTest : public DataControlClipboardTest
{
protected:
    [[nodiscard]] static DataControlAvailability
    availabilityOf(const std::string& display, std::chrono::milliseconds limit = defaultTimeout)
    {
        return DataControlClipboard::availability(limit, display);
    }
    [[nodiscard]] DataControlAvailability availability() const { return availabilityOf(socket); }
};

TEST_F(DataControlOfferTest, IsThereUnderEitherPrefix)
{
    start({.offersExt = true, .offersZwlr = false});
    EXPECT_EQ(availability(), DataControlAvailability::offered);
    compositor.reset();
    start({.offersExt = false, .offersZwlr = true});
    EXPECT_EQ(availability(), DataControlAvailability::offered);
}

TEST_F(DataControlOfferTest, LeavesNothingBehind)
{
    start();
    const std::size_t before = openDescriptors();
    EXPECT_EQ(availability(), DataControlAvailability::offered);
    EXPECT_TRUE(await([&] { return openDescriptors() == before; }));
    EXPECT_EQ(compositor->count(Kind::manager), 0U);
}

TEST_F(DataControlOfferTest, IsNotThereWithoutTheProtocol)
{
    start({.offersExt = false, .offersZwlr = false});
    EXPECT_EQ(availability(), DataControlAvailability::notOffered);
    EXPECT_EQ(outcomeOf("123456"), Outcome::unsupported);
    EXPECT_EQ(outcomeOf("7777"), Outcome::unsupported);
}

TEST_F(DataControlOfferTest, IsNotThereWithoutASeat)
{
    start({.seats = 0});
    EXPECT_EQ(availability(), DataControlAvailability::notOffered);
    compositor->addSeat();
    EXPECT_EQ(availability(), DataControlAvailability::offered);
}

TEST_F(DataControlOfferTest, IsNotThereWithoutACompositor)
{
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(availability(), DataControlAvailability::notOffered);
    EXPECT_EQ(availabilityOf(std::string(4096, 'x')), DataControlAvailability::notOffered);
    EXPECT_EQ(outcomeOf("123456"), Outcome::unreachable);
    EXPECT_LT(time.elapsed(), 1000);
}

TEST_F(DataControlOfferTest, IsNotThereWhereACompositorHasLeftItsSocketBehind)
{
    {
        const UniqueFd left = listeningSocket(socket, 1);
    }
    EXPECT_EQ(availability(), DataControlAvailability::notOffered);
    EXPECT_EQ(outcomeOf("123456"), Outcome::unreachable);
}

TEST_F(DataControlOfferTest, IsUnknownWhileTheCompositorDoesNotRespond)
{
    start();
    compositor->hold();
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(availabilityOf(socket, 200ms), DataControlAvailability::unknown);
    EXPECT_GE(time.elapsed(), 200);
    EXPECT_LT(time.elapsed(), bound.count());
    compositor->resume();
    EXPECT_EQ(availability(), DataControlAvailability::offered);
}

TEST_F(DataControlOfferTest, IsWaitedForWhileTheCompositorIsSlow)
{
    start();
    compositor->hold();
    const JoiningThread later([this] {
        std::this_thread::sleep_for(3s);
        compositor->resume();
    });
    EXPECT_EQ(availability(), DataControlAvailability::offered);
}

TEST_F(DataControlOfferTest, IsNotThereWhereTheCompositorHangsUpWithoutAResponse)
{
    std::optional<UniqueFd> silent(listeningSocket(socket, 8));
    const JoiningThread later([&silent] {
        std::this_thread::sleep_for(100ms);
        silent.reset();
    });
    EXPECT_EQ(availability(), DataControlAvailability::notOffered);
}

/// A compositor that stands still and whose queue of connections is full.
class FullConnectionBacklog
{
public:
    explicit FullConnectionBacklog(const std::filesystem::path& socket)
        : listening(listeningSocket(socket, 0))
        , taken(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const sockaddr_un address = socketAddress(socket);
        EXPECT_EQ(
            ::connect(taken.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }

private:
    UniqueFd listening;
    UniqueFd taken;
};

TEST_F(DataControlOfferTest, IsUnknownWhileTheCompositorTakesNoMoreConnections)
{
    const FullConnectionBacklog queue(socket);
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(availabilityOf(socket, 200ms), DataControlAvailability::unknown);
    EXPECT_LT(time.elapsed(), bound.count());
}

/// Leads to a compositor by the variables that a session sets.
class SessionDisplayTest : public DataControlOfferTest
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
    EXPECT_EQ(availabilityOf(""), DataControlAvailability::notOffered);
    ::setenv("WAYLAND_DISPLAY", "compositor", 1);
    EXPECT_EQ(availabilityOf(""), DataControlAvailability::offered);
    ::setenv("WAYLAND_DISPLAY", socket.c_str(), 1);
    EXPECT_EQ(availabilityOf(""), DataControlAvailability::offered);
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(availabilityOf(""), DataControlAvailability::offered);
    ::setenv("WAYLAND_DISPLAY", "compositor", 1);
    EXPECT_EQ(availabilityOf(""), DataControlAvailability::notOffered);
}

TEST_F(SessionDisplayTest, HasTheUsualNameWhereNoneIsSet)
{
    compositor.emplace(folder.path() / "wayland-0");
    EXPECT_EQ(availabilityOf(""), DataControlAvailability::offered);
    clipboard.emplace();
    set("123456");
    EXPECT_EQ(pasted(), "123456");
}

TEST_F(SessionDisplayTest, LeavesTheToolkitTheSocketThatIsMeantForIt)
{
    start();
    ::setenv("WAYLAND_SOCKET", "0", 1);
    EXPECT_EQ(availability(), DataControlAvailability::offered);
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
    ASSERT_EQ(outcomeOf("new"), Outcome::sent);
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
        ASSERT_EQ(outcomeOf(std::to_string(number)), Outcome::sent);
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
    EXPECT_EQ(outcomeOf("nobody is there"), Outcome::unreachable);
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

TEST_F(DataControlClipboardTest, OffersTheNewestOfItsTextsWhenALateCompositorResponds)
{
    start();
    compositor->hold();
    request("1111");
    request("2222");
    request("123456");
    expectNoWakeUp();
    compositor->resume();
    EXPECT_TRUE(await([this] { return pasted() == "123456"; }));
    EXPECT_EQ(outcome, Outcome::sent);
    EXPECT_EQ(compositor->selections(), 1U);
    EXPECT_EQ(compositor->connections(), 1U);
}

TEST_F(DataControlClipboardTest, SaysSoWhenALateCompositorDoesNotOfferIt)
{
    start({.offersExt = false, .offersZwlr = false});
    compositor->hold();
    request("123456");
    expectNoWakeUp();
    compositor->resume();
    EXPECT_TRUE(await([this] { return outcome == Outcome::unsupported; }));
}

TEST_F(DataControlClipboardTest, SaysSoWhenACompositorGoesThatHasNotResponded)
{
    const std::size_t before = openDescriptors();
    {
        const UniqueFd silent = listeningSocket(socket, 8);
        request("123456");
        expectNoWakeUp();
    }
    EXPECT_TRUE(await([this] { return outcome == Outcome::unreachable; }));
    EXPECT_TRUE(await([&] { return openDescriptors() == before; }));
}

TEST_F(DataControlClipboardTest, OffersItsTextToACompositorThatTookNoConnectionAtFirst)
{
    {
        const FullConnectionBacklog queue(socket);
        request("123456");
        runEventLoop(600ms); // more than the first pause
        EXPECT_EQ(outcome, std::nullopt);
        std::filesystem::remove(socket);
        start();
    }
    EXPECT_TRUE(await([this] { return pasted() == "123456"; }));
    EXPECT_EQ(outcome, Outcome::sent);
}

TEST_F(DataControlClipboardTest, KeepsTheNewestTextForACompositorThatHangs)
{
    start();
    set("123456");
    compositor->hold();
    int number = 0;
    do {
        request(std::to_string(++number));
    } while (outcome == Outcome::sent && number < 100000);
    ASSERT_EQ(outcome, std::nullopt);
    request("7777");
    expectNoWakeUp();
    compositor->resume();
    EXPECT_TRUE(await([this] { return pasted() == "7777"; }));
    EXPECT_EQ(outcome, Outcome::sent);
    EXPECT_EQ(compositor->connections(), 1U);
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

TEST_F(DataControlClipboardTest, OffersTheNewestTextToTheFirstSeat)
{
    for (const std::size_t seats : {std::size_t{0}, std::size_t{1}}) {
        start({.seats = seats});
        if (seats == 1) {
            set("123456");
            compositor->removeSeat(0);
        }
        request("7777");
        expectNoWakeUp();
        compositor->addSeat();
        EXPECT_TRUE(await([&] { return compositor->selections() == seats + 1; }));
        EXPECT_EQ(outcome, Outcome::sent);
        EXPECT_EQ(pasted("text/plain", seats), "7777");
        compositor.reset();
        clipboard.emplace(socket);
    }
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
