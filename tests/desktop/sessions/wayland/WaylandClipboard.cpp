#include "tests/desktop/sessions/wayland/WaylandClipboard.h"

#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <utility>

namespace orlimo {

namespace {

/// How long the tool may take to read a selection: much less than a test waits for it to change, so
/// that a selection whose owner is silent is read again.
constexpr std::chrono::seconds readerTimeout{10};

} // namespace

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
    ChildProcess reader("/usr/bin/wl-paste", tool(std::move(arguments), selection));
    if (!reader.endsWithin(readerTimeout)) {
        lastProblem = "its owner does not hand its text over: wl-paste does not end";
        return std::nullopt;
    }
    const bool hasText = reader.awaitEnd().status == 0;
    lastProblem = hasText ? "" : reader.errors();
    return hasText ? std::optional(reader.output()) : std::nullopt;
}

std::vector<std::string> WaylandClipboard::types(const std::string& selection) const
{
    ChildProcess reader("/usr/bin/wl-paste", tool({"--list-types"}, selection));
    reader.awaitEnd();
    return linesOf(reader.output());
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
