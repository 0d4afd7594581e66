#include "platform/clipboard/linux/DataControlClipboard.h"

#include "platform/files/UniqueFd.h"
#include "tests/platform/clipboard/linux/ListeningSocket.h"
#include "tests/platform/clipboard/linux/ScriptedCompositor.h"
#include "tests/platform/files/OpenDescriptors.h"
#include "tests/platform/process/PipeReader.h"
#include "tests/support/Await.h"
#include "tests/support/EventCount.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <utility>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using testing::ElementsAre;
using Kind = ScriptedCompositor::Kind;
using Outcome = DataControlClipboard::Outcome;
using Script = ScriptedCompositor::Script;

/// The limit of a single call, generous for a busy machine.
constexpr std::chrono::milliseconds bound = 10s;

class DataControlClipboardTest : public testing::Test
{
protected:
    void start(const Script& script = {}) { compositor.emplace(socket, script); }

    /// Starts over with a new compositor and a new clipboard.
    void restart(const Script& script)
    {
        compositor.reset();
        clipboard.emplace(socket);
        start(script);
    }

    /// Sets the text without waiting; `outcome` receives the result.
    void request(const std::string& text)
    {
        outcome.reset();
        QElapsedTimer time;
        time.start();
        clipboard->setText(text, [this](Outcome what) {
            EXPECT_FALSE(outcome.has_value()) << "completed twice";
            outcome = what;
        });
        EXPECT_LT(time.elapsed(), 1000) << "setText blocked";
    }

    [[nodiscard]] std::optional<Outcome> outcomeOf(const std::string& text)
    {
        request(text);
        (void)await([this] { return outcome.has_value(); });
        return outcome;
    }

    /// Runs the event loop and expects neither a result nor a wake-up.
    void expectNoWakeUp()
    {
        runEventLoop(20ms);
        const EventCount notified(QEvent::SockAct);
        const EventCount timedOut(QEvent::Timer);
        runEventLoop(200ms);
        EXPECT_EQ(notified.count() + timedOut.count(), 0);
        EXPECT_EQ(outcome, std::nullopt);
    }

    /// Sets the text and waits until the compositor has it on each of that many seats.
    void set(const std::string& text, std::size_t seats = 1)
    {
        const std::size_t before = compositor->selections();
        ASSERT_EQ(outcomeOf(text), Outcome::sent);
        // Without the event loop, on which nothing depends from here on.
        const QDeadlineTimer limit(defaultTimeout);
        while (compositor->selections() < before + seats && !limit.hasExpired()) {
            std::this_thread::sleep_for(100us);
        }
        ASSERT_EQ(compositor->selections(), before + seats);
    }

    [[nodiscard]] std::string pasted(std::size_t seat = 0, const std::string& type = "text/plain")
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

    void expectCounts(std::size_t count, std::initializer_list<Kind> kinds)
    {
        for (const Kind kind : kinds) {
            EXPECT_TRUE(awaitCount(kind, count)) << static_cast<int>(kind);
        }
    }

    [[nodiscard]] bool awaitDescriptors(std::size_t count)
    {
        return await([&] { return openDescriptors() == count; });
    }

    [[nodiscard]] static DataControlAvailability
    availability(const std::string& display, std::chrono::milliseconds limit = defaultTimeout)
    {
        return DataControlClipboard::availability(limit, display);
    }

    TemporaryFolder folder;
    std::filesystem::path socket = folder.path() / "compositor";
    std::optional<ScriptedCompositor> compositor;
    std::optional<DataControlClipboard> clipboard{socket};
    std::optional<Outcome> outcome;
};

using DataControlAvailabilityTest = DataControlClipboardTest;

TEST_F(DataControlAvailabilityTest, EitherPrefixIsOfferedAndTheStandardOnePreferred)
{
    for (const auto& [script, manager] :
         {std::pair{Script{.offersZwlr = true}, "ext_data_control_manager_v1"},
          std::pair{
              Script{.offersExt = false, .offersZwlr = true}, "zwlr_data_control_manager_v1"}})
    {
        restart(script);
        const std::size_t before = openDescriptors();
        EXPECT_EQ(availability(socket), DataControlAvailability::offered);
        EXPECT_TRUE(awaitDescriptors(before));
        EXPECT_TRUE(compositor->managers().empty());
        set("123456");
        EXPECT_THAT(compositor->managers(), ElementsAre(manager));
        EXPECT_EQ(pasted(), "123456");
    }
}

TEST_F(DataControlAvailabilityTest, MissingCompositorAndOneWithoutProtocolOrSeatDoNotOfferIt)
{
    constexpr auto notOffered = DataControlAvailability::notOffered;
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(availability(socket), notOffered);
    EXPECT_EQ(availability(std::string(4096, 'x')), notOffered);
    EXPECT_EQ(outcomeOf("123456"), Outcome::unreachable);
    {
        const UniqueFd stale = listeningSocket(socket, 1);
    }
    EXPECT_EQ(availability(socket), notOffered);
    EXPECT_EQ(outcomeOf("123456"), Outcome::unreachable);
    EXPECT_LT(time.elapsed(), 1000);
    std::filesystem::remove(socket);
    start({.offersExt = false});
    EXPECT_EQ(availability(socket), notOffered);
    EXPECT_EQ(outcomeOf("123456"), Outcome::unsupported);
    EXPECT_EQ(outcomeOf("7777"), Outcome::unsupported);
    restart({.seats = 0});
    EXPECT_EQ(availability(socket), notOffered);
}

TEST_F(DataControlAvailabilityTest, SlowCompositorIsUnknownUntilItResponds)
{
    start();
    compositor->hold();
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(availability(socket, 200ms), DataControlAvailability::unknown);
    EXPECT_GE(time.elapsed(), 200);
    EXPECT_LT(time.elapsed(), bound.count());
    const JoiningThread later([this] {
        std::this_thread::sleep_for(200ms);
        compositor->resume();
    });
    EXPECT_EQ(availability(socket), DataControlAvailability::offered);
}

TEST_F(DataControlAvailabilityTest, CompositorIsFoundByTheSessionsVariables)
{
    const EnvironmentChange runtimeFolder("XDG_RUNTIME_DIR", folder.path().string());
    const EnvironmentChange inherited("WAYLAND_SOCKET", "0");
    start();
    EXPECT_EQ(availability(""), DataControlAvailability::notOffered);
    for (const std::string& name : {"compositor"s, socket.string()}) {
        const EnvironmentChange display("WAYLAND_DISPLAY", name);
        EXPECT_EQ(availability(""), DataControlAvailability::offered) << name;
        const EnvironmentChange noFolder("XDG_RUNTIME_DIR", std::nullopt);
        EXPECT_EQ(availability("") == DataControlAvailability::offered, name == socket) << name;
    }
    compositor.emplace(folder.path() / "wayland-0", Script());
    EXPECT_EQ(availability(""), DataControlAvailability::offered) << "by default";
    EXPECT_STREQ(::getenv("WAYLAND_SOCKET"), "0") << "used up, though it is meant for Qt";
}

TEST_F(DataControlClipboardTest, OffersTextUnderAllItsNamesMarkedAsSecret)
{
    start();
    runEventLoop(20ms);
    EXPECT_EQ(compositor->managers().size(), 0U) << "before it is used";
    for (const auto& text : {"123456"s, ""s, "\u0661 e\u0301 \U0001F511\n"s, "12\0 34"s}) {
        set(text);
        EXPECT_THAT(
            compositor->types(),
            ElementsAre(
                "text/plain;charset=utf-8",
                "text/plain",
                "UTF8_STRING",
                "STRING",
                "TEXT",
                "x-kde-passwordManagerHint"));
        for (const std::string& type : compositor->types()) {
            const bool isHint = type == "x-kde-passwordManagerHint";
            EXPECT_EQ(pasted(0, type), isHint ? "secret" : text) << type;
        }
        EXPECT_EQ(pasted(0, "image/png"), "");
    }
}

TEST_F(DataControlClipboardTest, RequestBeforeTheReplacementGetsTheOldText)
{
    start();
    set("old");
    compositor->hold();
    ASSERT_EQ(outcomeOf("new"), Outcome::sent);
    PipeReader reader(compositor->paste());
    compositor->resume();
    ASSERT_TRUE(reader.awaitEnd());
    EXPECT_EQ(reader.content(), "old");
    EXPECT_EQ(pasted(), "new");
}

TEST_F(DataControlClipboardTest, FinishesTransferAfterTheCompositorHasGone)
{
    start();
    // More than a pipe and a socket hold.
    const std::string longText = std::string(std::size_t{4} * 1024 * 1024, 'x') + "end";
    set(longText);
    PipeReader reader(compositor->paste());
    ASSERT_TRUE(await([&] {
        reader.read(10);
        return !reader.content().empty();
    }));
    compositor.reset();
    ASSERT_TRUE(reader.awaitEnd());
    EXPECT_TRUE(reader.content() == longText) << reader.content().size();
}

TEST_F(DataControlClipboardTest, GivesUpWhatAnotherProgramReplacesAndTakesItBack)
{
    start();
    set("123456");
    compositor->takeSelection();
    EXPECT_TRUE(awaitCount(Kind::source, 0));
    EXPECT_TRUE(compositor->types().empty());
    compositor->addSeat();
    EXPECT_TRUE(awaitCount(Kind::device, 2));
    EXPECT_EQ(compositor->selections(), 1U) << "offered a replaced text to a new seat";
    set("7777", 2);
    EXPECT_EQ(pasted(), "7777");
    EXPECT_EQ(compositor->managers().size(), 1U);
}

TEST_F(DataControlClipboardTest, ManyTextsLeaveNoObjectsBehind)
{
    start();
    const std::size_t unused = openDescriptors();
    set("first");
    const std::size_t before = openDescriptors();
    for (int number = 0; number < 1000; ++number) {
        ASSERT_EQ(outcomeOf(std::to_string(number)), Outcome::sent);
    }
    EXPECT_TRUE(await([&] { return pasted() == "999"; }));
    expectCounts(1, {Kind::source, Kind::offer});
    for (int number = 0; number < 1000; ++number) {
        compositor->takeSelection();
        compositor->takePrimarySelection();
        QCoreApplication::processEvents();
    }
    expectCounts(0, {Kind::source});
    expectCounts(2, {Kind::offer}); // one for each selection
    expectCounts(1, {Kind::device, Kind::manager, Kind::seat});
    EXPECT_EQ(compositor->managers().size(), 1U);
    EXPECT_TRUE(awaitDescriptors(before));
    set("last");
    clipboard.reset();
    EXPECT_TRUE(await([&] { return compositor->types().empty(); }));
    expectCounts(0, {Kind::manager, Kind::device, Kind::source, Kind::offer, Kind::seat});
    EXPECT_TRUE(awaitDescriptors(unused));
}

TEST_F(DataControlClipboardTest, WithdrawsOldestTextsIfTheCompositorCancelsNone)
{
    start({.cancelsReplaced = false});
    for (int number = 0; number < 200; ++number) {
        set(std::to_string(number));
    }
    EXPECT_TRUE(awaitCount(Kind::source, 65));
    EXPECT_EQ(pasted(), "199");
}

TEST_F(DataControlClipboardTest, FindsRestartedCompositorWithoutPolling)
{
    const std::size_t before = openDescriptors();
    start();
    set("123456");
    outcome.reset();
    EXPECT_TRUE(awaitCount(Kind::offer, 1));
    expectNoWakeUp();
    compositor.reset();
    EXPECT_TRUE(awaitDescriptors(before));
    expectNoWakeUp();
    EXPECT_EQ(outcomeOf("nobody is there"), Outcome::unreachable);
    start();
    set("7777");
    EXPECT_EQ(pasted(), "7777");
}

TEST_F(
    DataControlClipboardTest, ReconnectsAfterProtocolErrorAndWithoutHavingNoticedTheDisconnection)
{
    start();
    testing::internal::CaptureStderr(); // the library logs the error
    const std::size_t withCompositor = openDescriptors();
    set("12345");
    set("123456");
    EXPECT_TRUE(awaitCount(Kind::offer, 1)); // nothing else is in transit beside the error
    compositor->postError();
    EXPECT_TRUE(awaitDescriptors(withCompositor));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("the test says so"));
    outcome.reset();
    expectNoWakeUp();
    for (const std::string text : {"7777", "8888"}) {
        set(text);
        EXPECT_EQ(pasted(), text);
        compositor->disconnectClients(); // and no event loop before the next text
    }
    EXPECT_EQ(compositor->managers().size(), 3U);
}

TEST_F(DataControlClipboardTest, CompositorThatEndsWithoutAResponseIsUnreachable)
{
    const std::size_t before = openDescriptors();
    std::optional<UniqueFd> silent(listeningSocket(socket, 8));
    request("123456");
    expectNoWakeUp();
    const JoiningThread later([&silent] {
        std::this_thread::sleep_for(100ms);
        silent.reset();
    });
    EXPECT_EQ(availability(socket), DataControlAvailability::notOffered);
    EXPECT_TRUE(await([this] { return outcome == Outcome::unreachable; }));
    EXPECT_TRUE(awaitDescriptors(before));
}

TEST_F(DataControlClipboardTest, FullBacklogIsTriedAgain)
{
    {
        const UniqueFd listening = listeningSocket(socket, 0);
        const UniqueFd taken(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        const sockaddr_un address = socketAddress(socket);
        const auto* const general = reinterpret_cast<const sockaddr*>(&address);
        ASSERT_EQ(::connect(taken.get(), general, sizeof address), 0);
        QElapsedTimer time;
        time.start();
        EXPECT_EQ(availability(socket, 200ms), DataControlAvailability::unknown);
        EXPECT_LT(time.elapsed(), bound.count());
        request("123456");
        runEventLoop(600ms); // longer than the first delay
        EXPECT_EQ(outcome, std::nullopt);
        std::filesystem::remove(socket);
        start();
    }
    EXPECT_TRUE(await([this] { return pasted() == "123456"; }));
    EXPECT_EQ(outcome, Outcome::sent);
}

TEST_F(DataControlClipboardTest, KeepsOnlyTheNewestTextForAHungCompositor)
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
    // Each event that it read would add a request to those that the compositor does not read.
    compositor->takePrimarySelection();
    const EventCount notified(QEvent::SockAct);
    runEventLoop(100ms);
    EXPECT_EQ(notified.count(), 0);
    compositor->resume();
    EXPECT_TRUE(await([this] { return pasted() == "7777"; }));
    EXPECT_EQ(outcome, Outcome::sent);
    EXPECT_EQ(compositor->managers().size(), 1U);
}

TEST_F(DataControlClipboardTest, SetsTheClipboardOfEverySeatAlsoOfALaterOne)
{
    start({.seats = 2});
    set("123456", 2);
    compositor->addSeat();
    EXPECT_TRUE(await([&] { return compositor->selections() == 3; }));
    for (std::size_t seat = 0; seat < 3; ++seat) {
        EXPECT_EQ(pasted(seat), "123456") << seat;
    }
    compositor->takeSelection(1);
    EXPECT_TRUE(awaitCount(Kind::source, 2));
    EXPECT_EQ(pasted(0), "123456");
    EXPECT_TRUE(compositor->types(1).empty());
    EXPECT_EQ(pasted(2), "123456");
    set("7777", 3);
    EXPECT_EQ(pasted(1), "7777");
}

TEST_F(DataControlClipboardTest, KeepsItsTextWhileItsOnlySeatIsReplaced)
{
    for (const std::uint32_t seatVersion : {1U, 5U, 7U}) {
        restart({.seatVersion = seatVersion});
        set("123456");
        compositor->removeSeat(0);
        compositor->addSeat();
        EXPECT_TRUE(await([&] { return compositor->selections() == 2; }));
        EXPECT_EQ(pasted(1), "123456");
        expectCounts(1, {Kind::device, Kind::source});
        // The first versions of a seat have no request to release it.
        EXPECT_EQ(compositor->count(Kind::seat), seatVersion < 5 ? 2U : 1U);
        EXPECT_EQ(compositor->managers().size(), 1U);
    }
}

TEST_F(DataControlClipboardTest, FirstSeatReceivesTheNewestText)
{
    start({.seats = 0});
    for (std::size_t seat = 0; seat < 2; ++seat) {
        const std::string text = std::to_string(seat);
        request(text);
        expectNoWakeUp();
        compositor->addSeat();
        EXPECT_TRUE(await([&] { return compositor->selections() == seat + 1; }));
        EXPECT_EQ(outcome, Outcome::sent);
        EXPECT_EQ(pasted(seat), text);
        compositor->removeSeat(seat);
    }
}

TEST_F(DataControlClipboardTest, RequestsFinishedClipboardObjectAgain)
{
    start();
    set("123456");
    compositor->finishDevices();
    expectCounts(0, {Kind::device, Kind::source, Kind::offer});
    set("7777");
    EXPECT_EQ(pasted(), "7777");
    EXPECT_EQ(compositor->managers().size(), 1U);
}

} // namespace
} // namespace orlimo
