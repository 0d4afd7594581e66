#include "tests/desktop/WaylandTest.h"

#include <algorithm>

// What holds on Wayland desktops that let programs without a window use the clipboard.

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

TEST_F(PasteboardOnWayland, HoldsTheLastOfManyTextsThatNobodyWaitedFor)
{
    for (int text = 0; text < 200; ++text) {
        put("text " + std::to_string(text));
    }
    EXPECT_TRUE(awaitPaste("199"));
}

TEST_F(PasteboardOnWayland, GivesAnyTextAsEachTypeOfTextAndMarksItAsSecret)
{
    for (const std::string text : {"482913", "\u0661\u0662\u0663\u0664 e\u0301 \U0001F511", ""}) {
        desktop().clipboard().copy("something that the user copied");
        put("text " + text);
        ASSERT_TRUE(awaitPaste(text));
        const auto types = desktop().clipboard().types();
        EXPECT_THAT(
            types,
            UnorderedElementsAre(
                "text/plain;charset=utf-8",
                "text/plain",
                "UTF8_STRING",
                "STRING",
                "TEXT",
                "x-kde-passwordManagerHint"));
        for (const std::string& type : types) {
            const bool isHint = type == "x-kde-passwordManagerHint";
            EXPECT_EQ(desktop().clipboard().paste("clipboard", type), isHint ? "secret" : text)
                << type;
        }
    }
}

TEST_F(PasteboardOnWayland, ChangesOnceForEachText)
{
    // Prints each new content of the clipboard. It reads each text to its end: the tool that copies
    // does not survive one who hangs up.
    ChildProcess observer("/usr/bin/wl-paste", onDesktop({"--watch", "sh", "-c", "cat; echo"}));
    desktop().clipboard().copy("before");
    ASSERT_TRUE(observer.awaitLine("before")) << observer.errors();
    for (const char* text : {"111111", "482913", "482913"}) {
        put("text " + std::string(text));
        ASSERT_TRUE(observer.awaitLine(text)) << observer.output() << observer.errors();
    }
    desktop().clipboard().copy("after");
    ASSERT_TRUE(observer.awaitLine("after")) << observer.output() << observer.errors();
    // Some compositors and tools report the empty clipboard of the start too.
    auto changes = linesOf(observer.output());
    changes.erase(changes.begin(), std::ranges::find(changes, "before"));
    EXPECT_THAT(changes, ElementsAre("before", "111111", "482913", "482913", "after"));
}

/// The first reader goes away in the middle of a large text; the second reads nothing more, as a
/// program that hangs does, and ends with its standard input.
TEST_F(PasteboardOnWayland, OutlivesAReaderThatHangsUpAndWaitsForNone)
{
    put("digits 3000000");
    ASSERT_TRUE(awaitWithPolling([this] { return !desktop().clipboard().types().empty(); }));
    ChildProcess leaving("/bin/sh", onDesktop({"-c", "wl-paste --no-newline | head -c 10"}));
    EXPECT_EQ(leaving.awaitEnd().status, 0);
    EXPECT_EQ(leaving.output(), "0123456789");
    ChildProcess hanging(
        "/bin/sh",
        onDesktop({"-c", "exec 3<&0; wl-paste --no-newline | { head -c 1; read _ <&3; }"}));
    ASSERT_TRUE(awaitWithPolling([&] { return hanging.output() == "0"; })) << hanging.errors();
    put("text 482913");
    EXPECT_TRUE(awaitPaste("482913"));
    EXPECT_EQ(probe().errors(), "");
}

} // namespace
} // namespace orlimo
