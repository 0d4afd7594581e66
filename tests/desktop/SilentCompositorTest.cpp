#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/platform/clipboard/linux/ListeningSocket.h"
#include "tests/program/ProgramSession.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The program in a Wayland session whose compositor never responds, beside an X server that does.
TEST(SilentCompositor, HoldsUpNeitherTheStartForEverNorTheClipboardOfX)
{
    const TemporaryFolder folder;
    const auto socket = folder.path() / "compositor";
    const UniqueFd silent = listeningSocket(socket, 8);
    const XServer server;
    ProgramSession session(
        {.arguments = {"--launched-at-login"},
         .environment = {
             {"DISPLAY", server.display()},
             {"QT_QPA_PLATFORM", std::nullopt},
             {"WAYLAND_DISPLAY", socket.string()},
             {"XDG_SESSION_TYPE", "wayland"}}});
    session.start(); // after 30 s
    EXPECT_EQ(platformOf(session.program().processId()), "xcb");
    EXPECT_EQ(session.program().errors(), "");
    session.awaitOpenThrottle();
    session.deliver("text Your code is 482913.");
    EXPECT_TRUE(await([&] { return server.paste("clipboard") == "482913"; }));
    EXPECT_EQ(session.program().errors(), "orlimo: the compositor's clipboard cannot be reached\n");
}

} // namespace
} // namespace orlimo
