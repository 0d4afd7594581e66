#include "tests/app/ProgramSession.h"
#include "tests/app/SwaySession.h"
#include "tests/support/ParentBond.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace orlimo {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::IsEmpty;
using testing::StartsWith;

/// Waits until `expected` is what a program pastes; says what is there instead when it is not.
[[nodiscard]] testing::AssertionResult
awaitPaste(SwaySession& desktop, const std::optional<std::string>& expected)
{
    if (awaitSparingly([&] { return desktop.clipboard().paste() == expected; })) {
        return testing::AssertionSuccess();
    }
    const auto found = desktop.clipboard().paste();
    return testing::AssertionFailure()
           << "the clipboard holds " << (found ? '"' + *found + '"' : "nothing");
}

/// The program's own way to the clipboard, in a small program, on a Wayland desktop where it never
/// has a window.
class PasteboardOnSway : public testing::Test
{
protected:
    void put(const std::string& command) { ASSERT_EQ(probe.ask(command), "done"); }

    SwaySession desktop{SwaySession::Bar::absent};
    ChildProcess probe{
        ORLIMO_CLIPBOARD_PROBE,
        {.environment = desktop.environment(), .beforeStart = endWithParent}};
};

TEST_F(PasteboardOnSway, IsThatOfWayland)
{
    EXPECT_THAT(probe.ask("platform"), StartsWith("wayland"));
}

TEST_F(PasteboardOnSway, TakesTwoHundredTextsOneAfterTheOther)
{
    constexpr int first = 100'000;
    constexpr int count = 200;
    for (int text = first; text < first + count; ++text) {
        put("text " + std::to_string(text));
        ASSERT_TRUE(awaitPaste(desktop, std::to_string(text)));
    }
    EXPECT_THAT(desktop.windowsOf(probe.processId()), IsEmpty());
    EXPECT_EQ(probe.errors(), "");
}

TEST_F(PasteboardOnSway, HoldsTheLastOfManyTextsThatNobodyWaitedFor)
{
    for (int text = 0; text < 200; ++text) {
        put("text " + std::to_string(text));
    }
    EXPECT_TRUE(awaitPaste(desktop, "199"));
}

TEST_F(PasteboardOnSway, GivesALargeTextCompletely)
{
    std::string text;
    while (text.size() < (3U << 20U)) {
        text += "0123456789";
    }
    put("digits " + std::to_string(text.size()));
    std::optional<std::string> pasted;
    ASSERT_TRUE(awaitSparingly([&] {
        pasted = desktop.clipboard().paste();
        return pasted && pasted->size() >= text.size();
    }));
    EXPECT_TRUE(*pasted == text) << pasted->size() << " bytes of " << text.size();
}

TEST_F(PasteboardOnSway, GivesAnEmptyText)
{
    desktop.clipboard().copy("something that the user copied");
    put("text ");
    EXPECT_TRUE(awaitPaste(desktop, ""));
}

TEST_F(PasteboardOnSway, GivesTextThatIsNotAscii)
{
    put("text \u0661\u0662\u0663\u0664 e\u0301 \U0001F511");
    EXPECT_TRUE(awaitPaste(desktop, "\u0661\u0662\u0663\u0664 e\u0301 \U0001F511"));
}

TEST_F(PasteboardOnSway, GivesTheSameTextAsEachTypeThatItOffers)
{
    put("text 482913");
    ASSERT_TRUE(awaitPaste(desktop, "482913"));
    const auto types = desktop.clipboard().types();
    EXPECT_THAT(types, Contains("text/plain;charset=utf-8"));
    EXPECT_THAT(types, Contains("text/plain"));
    EXPECT_THAT(types, Each(AnyOf(StartsWith("text/plain"), "UTF8_STRING", "STRING", "TEXT")));
    for (const std::string& type : types) {
        EXPECT_EQ(desktop.clipboard().paste("clipboard", type), "482913") << type;
    }
}

TEST_F(PasteboardOnSway, IsTakenAgainFromWhoeverHasTakenIt)
{
    for (int round = 0; round < 3; ++round) {
        const std::string text = "48291" + std::to_string(round);
        put("text " + text);
        ASSERT_TRUE(awaitPaste(desktop, text));
        desktop.clipboard().copy("mine now " + text);
    }
}

TEST_F(PasteboardOnSway, LeavesThePrimarySelectionAlone)
{
    desktop.clipboard().copy("selected with the mouse", "primary");
    put("text 482913");
    ASSERT_TRUE(awaitPaste(desktop, "482913"));
    EXPECT_EQ(desktop.clipboard().paste("primary"), "selected with the mouse");
}

/// A reader that goes away in the middle of a large text.
TEST_F(PasteboardOnSway, OutlivesAReaderThatHangsUp)
{
    put("digits 3000000");
    for (int round = 0; round < 5; ++round) {
        ChildProcess reader(
            "/bin/sh",
            {.arguments = {"-c", "wl-paste --no-newline | head -c 10"},
             .environment = desktop.environment(),
             .beforeStart = endWithParent});
        EXPECT_EQ(reader.awaitEnd().status, 0);
        EXPECT_EQ(reader.output(), "0123456789");
    }
    put("text 482913");
    EXPECT_TRUE(awaitPaste(desktop, "482913"));
    EXPECT_EQ(probe.errors(), "");
}

/// A reader that asks for a large text and then reads nothing, as a program that hangs does.
TEST_F(PasteboardOnSway, WaitsForNoReader)
{
    put("digits 3000000");
    ChildProcess reader(
        "/bin/sh",
        {.arguments = {"-c", "wl-paste --no-newline | { head -c 1; exec sleep 600; }"},
         .environment = desktop.environment(),
         .beforeStart = endWithParent});
    ASSERT_TRUE(awaitSparingly([&] { return reader.output() == "0"; })) << reader.errors();
    put("text 482913");
    EXPECT_TRUE(awaitPaste(desktop, "482913"));
}

TEST_F(PasteboardOnSway, EndsWithTheCompositor)
{
    put("text 482913");
    ASSERT_TRUE(awaitPaste(desktop, "482913"));
    desktop.kill();
    const auto end = probe.awaitEnd();
    EXPECT_EQ(end.signal, std::nullopt);
    EXPECT_NE(end.status, 0);
}

/// The program on a Wayland desktop, without a window and so never focused.
class ClipboardOnSway : public testing::Test
{
protected:
    void SetUp() override
    {
        session.start();
        session.awaitOpenThrottle();
    }

    SwaySession desktop;
    ProgramSession session{{.environment = desktop.environment(), .beforeStart = endWithParent}};
};

TEST_F(ClipboardOnSway, HoldsTheCodeInThePlaceOfItsOldContents)
{
    desktop.clipboard().copy("something that the user copied");
    for (const char* code : {"482913", "59302", "7764"}) {
        session.awaitOpenThrottle();
        session.deliver("text Your code is " + std::string(code) + ".");
        EXPECT_EQ(
            session.readReaction().back(), std::string(ProgramSession::reactionPrefix) + code);
        EXPECT_TRUE(awaitPaste(desktop, code));
    }
    EXPECT_THAT(desktop.windowsOf(session.program().processId()), IsEmpty());
    EXPECT_EQ(session.program().errors(), "");
}

TEST_F(ClipboardOnSway, IsTakenAgainFromWhoeverHasTakenIt)
{
    session.deliver("text Your code is 482913.");
    ASSERT_TRUE(awaitPaste(desktop, "482913"));
    EXPECT_EQ(session.readReaction().size(), 4U);
    desktop.clipboard().copy("mine now");
    session.awaitOpenThrottle();

    session.deliver("body Your code is 59302.");
    EXPECT_TRUE(awaitPaste(desktop, "59302"));
}

TEST_F(ClipboardOnSway, LeavesThePrimarySelectionAlone)
{
    desktop.clipboard().copy("selected with the mouse", "primary");
    session.deliver("text Your code is 482913.");
    ASSERT_TRUE(awaitPaste(desktop, "482913"));
    EXPECT_EQ(desktop.clipboard().paste("primary"), "selected with the mouse");
}

TEST_F(ClipboardOnSway, IsLeftAloneByMessagesWithoutACode)
{
    desktop.clipboard().copy("something that the user copied");
    session.deliver("text Lunch at noon?");
    ASSERT_TRUE(session.program().awaitLine("Lunch at noon?"));
    runEventLoop(std::chrono::milliseconds(200));
    EXPECT_EQ(desktop.clipboard().paste(), "something that the user copied");
}

TEST_F(ClipboardOnSway, IsNotMissedByAProgramThatLosesItsCompositor)
{
    session.deliver("text Your code is 482913.");
    ASSERT_TRUE(awaitPaste(desktop, "482913"));
    desktop.kill();
    const auto end = session.program().awaitEnd();
    EXPECT_EQ(end.signal, std::nullopt) << session.program().errors();
    EXPECT_NE(end.status, 0);
}

} // namespace
} // namespace orlimo
