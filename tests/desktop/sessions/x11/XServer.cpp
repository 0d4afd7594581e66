#include "tests/desktop/sessions/x11/XServer.h"

#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <csignal>

namespace orlimo {

namespace {

ChildSettings clipboardTool(const std::string& display, std::vector<std::string> arguments)
{
    return {
        .arguments = std::move(arguments),
        .environment = {{"DISPLAY", display}},
    };
}

} // namespace

XServer::XServer(const std::string& screen)
    // The server picks a free display and writes its number to standard output. It keeps what it
    // has when its last client goes, for the next one.
    : server(
          "/usr/bin/Xvfb",
          {
              .arguments =
                  {"-displayfd", "1", "-noreset", "-screen", "0", screen, "-nolisten", "tcp"},
              .beforeStart = dieWithParent,
          })
{
    const auto number = server.readLine();
    EXPECT_TRUE(number.has_value()) << server.errors();
    name = ":" + number.value_or("");
}

XServer::~XServer()
{
    // Asked to end, it takes its lock and its socket away.
    server.terminate();
}

void XServer::freeze() const
{
    server.signal(SIGSTOP);
}

void XServer::thaw() const
{
    server.signal(SIGCONT);
}

std::string XServer::paste(const std::string& selection, const std::string& target) const
{
    ChildProcess tool(
        "/usr/bin/xclip", clipboardTool(name, {"-o", "-selection", selection, "-t", target}));
    tool.awaitEnd();
    return tool.output();
}

std::vector<std::string> XServer::targets(const std::string& selection) const
{
    return linesOf(paste(selection, "TARGETS"));
}

void XServer::copy(const std::string& selection, const std::string& text) const
{
    ChildProcess tool("/usr/bin/xclip", clipboardTool(name, {"-i", "-selection", selection}));
    tool.writeLine(text);
    tool.closeInput();
    // The tool leaves a process behind that owns the selection, soon after it ends itself.
    tool.awaitEnd();
    EXPECT_TRUE(await([&] { return paste(selection) == text + "\n"; }));
}

} // namespace orlimo
