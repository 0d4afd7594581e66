#include "tests/desktop/WaylandTest.h"

// What holds on every Wayland desktop, also on one that gives the clipboard only to the program
// with the focus: there the program is one of X.

namespace orlimo {
namespace {

using testing::StartsWith;

TEST_F(PasteboardOnWayland, TakesTheClipboardAgainAndAgain)
{
    EXPECT_THAT(probe().ask("platform"), StartsWith(WaylandDesktop::platform));
    for (int text = 100'000; text < 100'010; ++text) {
        put("text " + std::to_string(text));
        ASSERT_TRUE(awaitPaste(std::to_string(text))) << probe().errors();
        if (text % 3 == 0) {
            desktop().clipboard().copy("mine now " + std::to_string(text));
        }
    }
    EXPECT_EQ(probe().errors(), "");
}

TEST_F(PasteboardOnWayland, GivesALargeTextCompletely)
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

/// The program without a window, and so never focused.
using ProgramOnWayland = WaylandTest;

TEST_F(ProgramOnWayland, PutsEachCodeOnTheClipboard)
{
    prepare();
    session().start();
    EXPECT_EQ(platformOf(program().processId()), WaylandDesktop::platform);
    desktop().clipboard().copy("something that the user copied");
    for (const char* code : {"482913", "59302"}) {
        deliver(code);
        EXPECT_TRUE(awaitPaste(code));
    }
    EXPECT_FALSE(desktop().accessibility().find("push button", "Copy")) << "a window is open";
    EXPECT_EQ(program().errors(), "");
}

TEST_F(ProgramOnWayland, EndsWithTheCompositor)
{
    prepare();
    session().start();
    deliver("482913");
    ASSERT_TRUE(awaitPaste("482913"));
    desktop().kill();
    const auto end = program().awaitEnd();
    EXPECT_EQ(end.signal, std::nullopt) << program().errors();
    EXPECT_NE(end.status, 0);
}

TEST_F(ProgramOnWayland, PutsTheCodeOnTheClipboardOfACompositorFrozenAtTheStartAndAtACopy)
{
    // More than what the program ever waits for the compositor elsewhere.
    constexpr std::chrono::seconds freezeDuration{4};
    prepare();
    session().startWriter();
    desktop().freeze();
    session().startProgram();
    runEventLoop(freezeDuration);
    desktop().thaw();
    ASSERT_TRUE(await([this] { return std::filesystem::exists(session().preferences()); }));
    ProgramSession::waitForThrottle();
    EXPECT_EQ(platformOf(program().processId()), WaylandDesktop::platform);
    EXPECT_EQ(program().errors(), "");

    desktop().freeze();
    deliver("59302");
    deliver("482913");
    runEventLoop(freezeDuration);
    desktop().thaw();
    EXPECT_TRUE(awaitPaste("482913"));
}

} // namespace
} // namespace orlimo
