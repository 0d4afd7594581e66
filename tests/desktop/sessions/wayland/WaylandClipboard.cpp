#include "tests/desktop/sessions/wayland/WaylandClipboard.h"

#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <utility>

namespace orlimo {

WaylandClipboard::WaylandClipboard(std::map<std::string, std::optional<std::string>> environment)
    : variables(std::move(environment))
{}

std::optional<std::string>
WaylandClipboard::paste(const std::string& selection, const std::string& type) const
{
    std::vector<std::string> arguments{"--no-newline"};
    if (!type.empty()) {
        arguments.insert(arguments.end(), {"--type", type});
    }
    // Much less than a test waits, so that a selection whose owner is silent is read again.
    const auto reader = runTool("/usr/bin/wl-paste", tool(std::move(arguments), selection));
    const bool hasText = reader.status == 0;
    lastProblem = hasText ? "" : reader.errors;
    return hasText ? std::optional(reader.output) : std::nullopt;
}

std::vector<std::string> WaylandClipboard::types(const std::string& selection) const
{
    return linesOf(runTool("/usr/bin/wl-paste", tool({"--list-types"}, selection)).output);
}

void WaylandClipboard::copy(const std::string& text, const std::string& selection)
{
    auto& owner = owners[selection];
    owner = std::make_unique<ChildProcess>(
        "/usr/bin/wl-copy", tool({"--foreground", "--", text}, selection));
    std::optional<std::string> found;
    EXPECT_TRUE(awaitWithPolling([&] { return (found = paste(selection)) == text; }))
        << "instead of \"" << text << "\" it holds " << found.value_or("nothing: " + problem())
        << '\n'
        << owner->errors();
}

ChildSettings
WaylandClipboard::tool(std::vector<std::string> arguments, const std::string& selection) const
{
    if (selection == "primary") {
        arguments.insert(arguments.begin(), "--primary");
    }
    return {
        .arguments = std::move(arguments),
        .environment = variables,
        .beforeStart = dieWithParent,
    };
}

} // namespace orlimo
