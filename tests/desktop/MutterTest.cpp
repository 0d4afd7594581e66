#include "tests/desktop/sessions/DesktopTest.h"
#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/desktop/sessions/wayland/MutterSession.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A Wayland desktop that gives the clipboard only to the program with the focus, but has an X
/// server.
class OnMutter : public DesktopTest<MutterSession>
{
protected:
    /// Waits until `expected` is what the compositor reads; says what is there instead when it is
    /// not.
    [[nodiscard]] testing::AssertionResult awaitPaste(const std::string& expected)
    {
        std::optional<std::string> found;
        if (awaitWithPolling([&] { return (found = desktop().clipboard().paste()) == expected; })) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure()
               << "the clipboard holds " << found.value_or("nothing") << " instead of " << expected;
    }
};

/// The program's own clipboard backend, in a small program that never has a window.
class PasteboardOnMutter : public OnMutter
{
protected:
    void SetUp() override
    {
        OnMutter::SetUp();
        if (!IsSkipped()) {
            ownProbe.emplace(
                ORLIMO_CLIPBOARD_PROBE,
                ChildSettings{
                    .environment = desktop().environment(), .beforeStart = dieWithParent});
        }
    }

    [[nodiscard]] ChildProcess& probe() { return *ownProbe; }

    void put(const std::string& command) { ASSERT_EQ(probe().ask(command), "done"); }

    void putAndPaste(int count)
    {
        constexpr int first = 100'000;
        for (int text = first; text < first + count; ++text) {
            put("text " + std::to_string(text));
            ASSERT_TRUE(awaitPaste(std::to_string(text))) << probe().errors();
        }
    }

private:
    std::optional<ChildProcess> ownProbe;
};

TEST_F(PasteboardOnMutter, TakesTextsOneAfterTheOther)
{
    EXPECT_EQ(probe().ask("platform"), "xcb");
    putAndPaste(10);
}

TEST_F(PasteboardOnMutter, TakesTwoHundredTextsOneAfterTheOther)
{
    putAndPaste(200);
}

TEST_F(PasteboardOnMutter, GivesALargeTextCompletely)
{
    std::string text;
    while (text.size() < (3U << 20U)) {
        text += "0123456789";
    }
    put("digits " + std::to_string(text.size()));
    std::optional<std::string> pasted;
    ASSERT_TRUE(awaitWithPolling([&] {
        pasted = desktop().clipboard().paste();
        return pasted && pasted->size() >= text.size();
    }));
    EXPECT_TRUE(*pasted == text) << pasted->size() << " bytes of " << text.size();
}

TEST_F(PasteboardOnMutter, IsTakenAgainFromWhoeverHasTakenIt)
{
    for (int round = 0; round < 3; ++round) {
        const std::string text = "48291" + std::to_string(round);
        put("text " + text);
        ASSERT_TRUE(awaitPaste(text));
        desktop().copy("mine now " + text);
    }
}

/// The program on that desktop.
class ProgramOnMutter : public OnMutter
{
protected:
    void start(std::vector<std::string> arguments, const std::optional<std::string>& platform = {})
    {
        auto variables = desktop().environment();
        variables["QT_QPA_PLATFORM"] = platform;
        session.emplace(ProgramSession::Settings{
            .arguments = std::move(arguments),
            .environment = std::move(variables),
            .beforeStart = dieWithParent});
        session->start();
    }

    [[nodiscard]] bool showsItsWindow()
    {
        return desktop().accessibility().find("Orlimo", "push button", "Copy").has_value();
    }

    [[nodiscard]] ChildProcess& program() { return session->program(); }

    std::optional<ProgramSession> session;
};

TEST_F(ProgramOnMutter, PutsTheCodeOnTheClipboardWithoutTheFocus)
{
    start({"--launched-at-login"}); // when no window opens
    EXPECT_EQ(platformOf(program().processId()), "xcb");
    desktop().copy("something that the user copied");
    for (const char* code : {"482913", "59302"}) {
        session->awaitOpenThrottle();
        session->deliver("text Your code is " + std::string(code) + ".");
        EXPECT_EQ(
            session->readReaction().back(), std::string(ProgramSession::reactionPrefix) + code);
        EXPECT_TRUE(awaitPaste(code));
    }
    EXPECT_FALSE(showsItsWindow());
    EXPECT_EQ(program().errors(), "");
}

TEST_F(ProgramOnMutter, UsesXWithACompositorFrozenAtTheStart)
{
    session.emplace(ProgramSession::Settings{
        .arguments = {"--launched-at-login"},
        .environment = desktop().environment(),
        .beforeStart = dieWithParent});
    session->startWriter();
    desktop().freeze();
    session->startProgram();
    runEventLoop(std::chrono::seconds(4));
    desktop().thaw();
    ASSERT_TRUE(await([this] { return std::filesystem::exists(session->preferences()); }));
    ProgramSession::waitForThrottle();
    EXPECT_EQ(platformOf(program().processId()), "xcb");
    session->deliver("text Your code is 482913.");
    EXPECT_TRUE(awaitPaste("482913"));
    EXPECT_EQ(program().errors(), "");
}

TEST_F(ProgramOnMutter, IsOnWaylandWhereTheUserWantsIt)
{
    start({"--launched-at-login"}, "wayland");
    EXPECT_EQ(platformOf(program().processId()), "wayland");
    EXPECT_TRUE(awaitWithPolling([this] { return !program().errors().empty(); }));
    EXPECT_THAT(linesOf(program().errors()), ElementsAre(HasSubstr("clipboard")));
}

TEST_F(ProgramOnMutter, ShowsItsWindowWhenTheUserStartsIt)
{
    start({});
    EXPECT_TRUE(awaitWithPolling([this] { return showsItsWindow(); })) << program().errors();
}

} // namespace
} // namespace orlimo
