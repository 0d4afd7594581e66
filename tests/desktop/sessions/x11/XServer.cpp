#include "tests/desktop/sessions/x11/XServer.h"

#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

namespace orlimo {

void copyWithXclip(
    const std::map<std::string, std::optional<std::string>>& environment,
    const std::string& selection,
    const std::string& text)
{
    // The tool leaves a process behind that owns the selection, soon after it ends itself.
    const auto tool = runTool(
        "/usr/bin/xclip",
        {.arguments = {"-i", "-selection", selection}, .environment = environment},
        text + "\n");
    EXPECT_EQ(tool.status, 0) << tool.errors;
}

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

std::string XServer::paste(const std::string& selection, const std::string& target) const
{
    const auto tool = runTool(
        "/usr/bin/xclip",
        {.arguments = {"-o", "-selection", selection, "-t", target},
         .environment = {{"DISPLAY", name}}});
    lastProblem = tool.errors;
    return tool.status == 0 ? tool.output : "";
}

testing::AssertionResult
XServer::awaitPaste(const std::string& expected, const std::string& selection) const
{
    std::string found;
    if (awaitWithPolling([&] { return (found = paste(selection)) == expected; })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "the " << selection << " holds \"" << found
                                       << "\" instead of \"" << expected << "\" " << lastProblem;
}

void XServer::copy(const std::string& selection, const std::string& text) const
{
    copyWithXclip({{"DISPLAY", name}}, selection, text);
    EXPECT_TRUE(awaitPaste(text + "\n", selection));
}

} // namespace orlimo
