#pragma once

#include "tests/desktop/sessions/DesktopTest.h"
#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

// What holds on every Wayland desktop that lets programs without a window use the clipboard. Each
// such desktop runs these tests: one type that starts it, with `environment`, `clipboard`, `freeze`
// and `thaw`, and `kill`.

namespace orlimo {

/// Waits until `expected` is what a program pastes; says what is there instead when it is not.
template <typename Desktop>
[[nodiscard]] testing::AssertionResult
awaitPaste(Desktop& desktop, const std::optional<std::string>& expected)
{
    if (awaitWithPolling([&] { return desktop.clipboard().paste() == expected; })) {
        return testing::AssertionSuccess();
    }
    const auto found = desktop.clipboard().paste();
    return testing::AssertionFailure()
           << "the clipboard holds "
           << (found ? '"' + *found + '"' : "nothing: " + desktop.clipboard().problem());
}

/// The program's own clipboard backend, in a small program, on a Wayland desktop where it never
/// has a window.
template <typename Desktop> class PasteboardOnWayland : public DesktopTest<Desktop>
{
protected:
    void SetUp() override
    {
        DesktopTest<Desktop>::SetUp();
        if (!this->IsSkipped()) {
            ownProbe.emplace(
                ORLIMO_CLIPBOARD_PROBE,
                ChildSettings{
                    .environment = this->desktop().environment(), .beforeStart = dieWithParent});
        }
    }

    [[nodiscard]] ChildProcess& probe() { return *ownProbe; }

    void put(const std::string& command) { ASSERT_EQ(probe().ask(command), "done"); }

    void putAndPaste(int count)
    {
        constexpr int first = 100'000;
        for (int text = first; text < first + count; ++text) {
            put("text " + std::to_string(text));
            ASSERT_TRUE(awaitPaste(this->desktop(), std::to_string(text))) << probe().errors();
        }
        EXPECT_EQ(probe().errors(), "");
    }

    void putAndPasteLargeText()
    {
        std::string text;
        while (text.size() < (3U << 20U)) {
            text += "0123456789";
        }
        put("digits " + std::to_string(text.size()));
        std::optional<std::string> pasted;
        ASSERT_TRUE(awaitWithPolling([&] {
            pasted = this->desktop().clipboard().paste();
            return pasted && pasted->size() >= text.size();
        }));
        EXPECT_TRUE(*pasted == text) << pasted->size() << " bytes of " << text.size();
    }

private:
    std::optional<ChildProcess> ownProbe;
};

TYPED_TEST_SUITE_P(PasteboardOnWayland);

TYPED_TEST_P(PasteboardOnWayland, TakesTextsOneAfterTheOther)
{
    EXPECT_THAT(this->probe().ask("platform"), testing::StartsWith("wayland"));
    this->putAndPaste(10);
}

TYPED_TEST_P(PasteboardOnWayland, TakesTwoHundredTextsOneAfterTheOther)
{
    this->putAndPaste(200);
}

TYPED_TEST_P(PasteboardOnWayland, HoldsTheLastOfManyTextsThatNobodyWaitedFor)
{
    for (int text = 0; text < 200; ++text) {
        this->put("text " + std::to_string(text));
    }
    EXPECT_TRUE(awaitPaste(this->desktop(), "199"));
}

TYPED_TEST_P(PasteboardOnWayland, GivesALargeTextCompletely)
{
    this->putAndPasteLargeText();
}

TYPED_TEST_P(PasteboardOnWayland, GivesAnyText)
{
    this->desktop().clipboard().copy("something that the user copied");
    for (const char* text : {"", "\u0661\u0662\u0663\u0664 e\u0301 \U0001F511"}) {
        this->put("text " + std::string(text));
        EXPECT_TRUE(awaitPaste(this->desktop(), text));
    }
}

TYPED_TEST_P(PasteboardOnWayland, GivesTheSameTextAsEachTypeOfTextAndMarksItAsSecret)
{
    this->put("text 482913");
    ASSERT_TRUE(awaitPaste(this->desktop(), "482913"));
    const auto types = this->desktop().clipboard().types();
    EXPECT_THAT(
        types,
        testing::UnorderedElementsAre(
            "text/plain;charset=utf-8",
            "text/plain",
            "UTF8_STRING",
            "STRING",
            "TEXT",
            "x-kde-passwordManagerHint"));
    for (const std::string& type : types) {
        const bool isHint = type == "x-kde-passwordManagerHint";
        EXPECT_EQ(
            this->desktop().clipboard().paste("clipboard", type), isHint ? "secret" : "482913")
            << type;
    }
}

TYPED_TEST_P(PasteboardOnWayland, ChangesOnceForEachText)
{
    ChildProcess observer(
        "/usr/bin/wl-paste",
        // Reads each text to its end: the tool that copies does not survive one who hangs up.
        {.arguments = {"--watch", "sh", "-c", "cat > /dev/null; echo changed"},
         .environment = this->desktop().environment(),
         .beforeStart = dieWithParent});
    this->desktop().clipboard().copy("before");
    ASSERT_TRUE(observer.awaitLine("changed")) << observer.errors();
    for (const char* text : {"111111", "482913", "482913"}) {
        this->put("text " + std::string(text));
        ASSERT_TRUE(awaitPaste(this->desktop(), text));
    }
    this->desktop().clipboard().copy("after");
    const std::string afterEachText = "changed\nchanged\nchanged\n";
    const std::string all = "changed\n" + afterEachText + "changed\n";
    EXPECT_TRUE(await([&] { return observer.output().size() >= all.size(); }));
    EXPECT_EQ(observer.output(), all);
}

TYPED_TEST_P(PasteboardOnWayland, IsTakenAgainFromWhoeverHasTakenIt)
{
    for (int round = 0; round < 3; ++round) {
        const std::string text = "48291" + std::to_string(round);
        this->put("text " + text);
        ASSERT_TRUE(awaitPaste(this->desktop(), text));
        this->desktop().clipboard().copy("mine now " + text);
    }
}

/// A reader that goes away in the middle of a large text.
TYPED_TEST_P(PasteboardOnWayland, OutlivesAReaderThatHangsUp)
{
    this->put("digits 3000000");
    ASSERT_TRUE(awaitWithPolling([&] { return !this->desktop().clipboard().types().empty(); }));
    for (int round = 0; round < 5; ++round) {
        ChildProcess reader(
            "/bin/sh",
            {.arguments = {"-c", "wl-paste --no-newline | head -c 10"},
             .environment = this->desktop().environment(),
             .beforeStart = dieWithParent});
        EXPECT_EQ(reader.awaitEnd().status, 0);
        EXPECT_EQ(reader.output(), "0123456789");
    }
    this->put("text 482913");
    EXPECT_TRUE(awaitPaste(this->desktop(), "482913"));
    EXPECT_EQ(this->probe().errors(), "");
}

/// A reader that asks for a large text and then reads nothing, as a program that hangs does. It
/// ends with its standard input.
TYPED_TEST_P(PasteboardOnWayland, WaitsForNoReader)
{
    this->put("digits 3000000");
    ASSERT_TRUE(awaitWithPolling([&] { return !this->desktop().clipboard().types().empty(); }));
    ChildProcess reader(
        "/bin/sh",
        {.arguments = {"-c", "exec 3<&0; wl-paste --no-newline | { head -c 1; read _ <&3; }"},
         .environment = this->desktop().environment(),
         .beforeStart = dieWithParent});
    ASSERT_TRUE(awaitWithPolling([&] { return reader.output() == "0"; })) << reader.errors();
    this->put("text 482913");
    EXPECT_TRUE(awaitPaste(this->desktop(), "482913"));
}

TYPED_TEST_P(PasteboardOnWayland, EndsWithTheCompositor)
{
    this->put("text 482913");
    ASSERT_TRUE(awaitPaste(this->desktop(), "482913"));
    this->desktop().kill();
    const auto end = this->probe().awaitEnd();
    EXPECT_EQ(end.signal, std::nullopt);
    EXPECT_NE(end.status, 0);
}

/// The program on a Wayland desktop, without a window and so never focused.
template <typename Desktop> class ClipboardOnWayland : public DesktopTest<Desktop>
{
protected:
    void SetUp() override
    {
        DesktopTest<Desktop>::SetUp();
        if (!this->IsSkipped()) {
            // Started by the user it would show its window on a desktop without a tray.
            ownSession.emplace(ProgramSession::Settings{
                .arguments = {"--launched-at-login"},
                .environment = this->desktop().environment(),
                .beforeStart = dieWithParent});
            session().start();
            session().awaitOpenThrottle();
        }
    }

    [[nodiscard]] ProgramSession& session() { return *ownSession; }

private:
    std::optional<ProgramSession> ownSession;
};

TYPED_TEST_SUITE_P(ClipboardOnWayland);

TYPED_TEST_P(ClipboardOnWayland, HoldsTheCodeInsteadOfItsOldContents)
{
    this->desktop().clipboard().copy("something that the user copied");
    for (const char* code : {"482913", "59302"}) {
        this->session().awaitOpenThrottle();
        this->session().deliver("text Your code is " + std::string(code) + ".");
        EXPECT_EQ(
            this->session().readReaction().back(),
            std::string(ProgramSession::reactionPrefix) + code);
        EXPECT_TRUE(awaitPaste(this->desktop(), code));
    }
    EXPECT_EQ(this->session().program().errors(), "");
}

TYPED_TEST_P(ClipboardOnWayland, IsLeftAloneByMessagesWithoutACode)
{
    this->desktop().clipboard().copy("something that the user copied");
    this->session().deliver("text Lunch at noon?");
    ASSERT_TRUE(this->session().program().awaitLine("Lunch at noon?"));
    runEventLoop(std::chrono::milliseconds(200));
    EXPECT_EQ(this->desktop().clipboard().paste(), "something that the user copied");
}

TYPED_TEST_P(ClipboardOnWayland, EndsTheProgramWithTheCompositor)
{
    this->session().deliver("text Your code is 482913.");
    ASSERT_TRUE(awaitPaste(this->desktop(), "482913"));
    this->desktop().kill();
    const auto end = this->session().program().awaitEnd();
    EXPECT_EQ(end.signal, std::nullopt) << this->session().program().errors();
    EXPECT_NE(end.status, 0);
}

/// How long the compositor stands still: more than what the program ever waits for it elsewhere.
constexpr std::chrono::seconds freezeDuration{4};

/// The program on a Wayland desktop whose compositor is slow.
template <typename Desktop> class ClipboardOfSlowCompositor : public DesktopTest<Desktop>
{};

TYPED_TEST_SUITE_P(ClipboardOfSlowCompositor);

TYPED_TEST_P(ClipboardOfSlowCompositor, HoldsTheCodeAfterItStoodStillAtTheStartAndAtACopy)
{
    ProgramSession session(
        {.arguments = {"--launched-at-login"},
         .environment = this->desktop().environment(),
         .beforeStart = dieWithParent});
    session.startWriter();
    this->desktop().freeze();
    session.startProgram();
    runEventLoop(freezeDuration);
    this->desktop().thaw();
    ASSERT_TRUE(await([&] { return std::filesystem::exists(session.preferences()); }));
    ProgramSession::waitForThrottle();
    EXPECT_THAT(platformOf(session.program().processId()), testing::StartsWith("wayland"));
    EXPECT_EQ(session.program().errors(), "");

    this->desktop().freeze();
    for (const char* code : {"59302", "482913"}) {
        session.awaitOpenThrottle();
        session.deliver("text Your code is " + std::string(code) + ".");
        EXPECT_EQ(
            session.readReaction().back(), std::string(ProgramSession::reactionPrefix) + code);
    }
    runEventLoop(freezeDuration);
    this->desktop().thaw();
    EXPECT_TRUE(awaitPaste(this->desktop(), "482913"));
}

/// The selection that a mouse button pastes, on a desktop that shows it to programs without a
/// window.
template <typename Desktop> class PrimarySelectionOnWayland : public ClipboardOnWayland<Desktop>
{};

TYPED_TEST_SUITE_P(PrimarySelectionOnWayland);

TYPED_TEST_P(PrimarySelectionOnWayland, IsLeftAlone)
{
    this->desktop().clipboard().copy("selected with the mouse", "primary");
    this->session().deliver("text Your code is 482913.");
    ASSERT_TRUE(awaitPaste(this->desktop(), "482913"));
    EXPECT_EQ(this->desktop().clipboard().paste("primary"), "selected with the mouse");
}

REGISTER_TYPED_TEST_SUITE_P(
    PasteboardOnWayland,
    TakesTextsOneAfterTheOther,
    TakesTwoHundredTextsOneAfterTheOther,
    HoldsTheLastOfManyTextsThatNobodyWaitedFor,
    GivesALargeTextCompletely,
    GivesAnyText,
    GivesTheSameTextAsEachTypeOfTextAndMarksItAsSecret,
    ChangesOnceForEachText,
    IsTakenAgainFromWhoeverHasTakenIt,
    OutlivesAReaderThatHangsUp,
    WaitsForNoReader,
    EndsWithTheCompositor);

REGISTER_TYPED_TEST_SUITE_P(
    ClipboardOnWayland,
    HoldsTheCodeInsteadOfItsOldContents,
    IsLeftAloneByMessagesWithoutACode,
    EndsTheProgramWithTheCompositor);

REGISTER_TYPED_TEST_SUITE_P(
    ClipboardOfSlowCompositor, HoldsTheCodeAfterItStoodStillAtTheStartAndAtACopy);

REGISTER_TYPED_TEST_SUITE_P(PrimarySelectionOnWayland, IsLeftAlone);

} // namespace orlimo
