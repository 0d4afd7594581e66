#include "tests/desktop/WaylandClipboardTest.h"
#include "tests/desktop/sessions/wayland/MutterSession.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// The compositor lets no program without a window use the clipboard, but has an X server.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(PasteboardOnWayland);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ClipboardOnWayland);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ClipboardOfSlowCompositor);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(PrimarySelectionOnWayland);

using PasteboardOnMutter = PasteboardOnWayland<MutterSession>;

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
    putAndPasteLargeText();
}

TEST_F(PasteboardOnMutter, IsTakenAgainFromWhoeverHasTakenIt)
{
    for (int round = 0; round < 3; ++round) {
        const std::string text = "48291" + std::to_string(round);
        put("text " + text);
        ASSERT_TRUE(awaitPaste(desktop(), text));
        desktop().copy("mine now " + text);
    }
}

/// The program on that desktop.
class ProgramOnMutter : public DesktopTest<MutterSession>
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
        EXPECT_TRUE(awaitPaste(desktop(), code));
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
    EXPECT_TRUE(awaitPaste(desktop(), "482913"));
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
