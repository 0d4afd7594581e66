#pragma once

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// The selections of a Wayland desktop that lets programs without a window read and write them, as
/// other programs see them. A selection is "clipboard" or "primary".
class WaylandClipboard
{
public:
    /// `environment` is what puts a program on the desktop.
    explicit WaylandClipboard(std::map<std::string, std::optional<std::string>> environment)
        : variables(std::move(environment))
    {}

    /// What a program pastes from `selection`, byte for byte, as `type` or, where that is empty, as
    /// what a program that wants text picks. Absent when nobody owns it, when the type is not
    /// offered, and when the text does not come to an end within ten seconds; `problem` says which.
    [[nodiscard]] std::optional<std::string>
    paste(const std::string& selection = "clipboard", const std::string& type = "") const
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

    /// Why the last paste got nothing; empty where it did.
    [[nodiscard]] const std::string& problem() const { return lastProblem; }

    /// Makes nobody own the clipboard. False when the compositor does not take that.
    [[nodiscard]] bool clear() const
    {
        return runTool("/usr/bin/wl-copy", tool({"--clear"}, "clipboard")).status == 0;
    }

    /// The types that the owner of the clipboard offers.
    [[nodiscard]] std::vector<std::string> types() const
    {
        return linesOf(runTool("/usr/bin/wl-paste", tool({"--list-types"}, "clipboard")).output);
    }

    /// Makes another program own `selection` with `text`, until someone else does or the object
    /// goes, and waits until it does.
    void copy(const std::string& text, const std::string& selection = "clipboard")
    {
        auto& owner = owners[selection];
        owner = std::make_unique<ChildProcess>(
            "/usr/bin/wl-copy", tool({"--foreground", "--", text}, selection));
        std::optional<std::string> found;
        const auto isDecided = [&] {
            return (found = paste(selection)) == text || !owner->isRunning();
        };
        EXPECT_TRUE(awaitWithPolling(isDecided) && found == text)
            << "instead of \"" << text << "\" it holds " << found.value_or("nothing: " + problem())
            << '\n'
            << owner->errors();
    }

private:
    [[nodiscard]] ChildSettings
    tool(std::vector<std::string> arguments, const std::string& selection) const
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

    std::map<std::string, std::optional<std::string>> variables;
    std::map<std::string, std::unique_ptr<ChildProcess>> owners;
    mutable std::string lastProblem;
};

} // namespace orlimo
