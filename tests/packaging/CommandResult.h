#pragma once

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace orlimo {

/// How a command ended, and what it wrote.
struct CommandResult
{
    /// Absent when a signal ended it.
    std::optional<int> status;
    std::string output;
    std::string errors;

    /// Runs `program` to its end. Ends it with this process.
    [[nodiscard]] static CommandResult
    of(const std::filesystem::path& program,
       ChildSettings settings,
       std::chrono::milliseconds limit = defaultTimeout)
    {
        settings.beforeStart = [before = std::move(settings.beforeStart)] {
            dieWithParent();
            if (before) {
                before();
            }
        };
        ChildProcess process(program, settings);
        process.closeInput();
        const auto end = process.awaitEnd(limit);
        return {end.status, process.output(), process.errors()};
    }

    /// All that it wrote, for a message.
    [[nodiscard]] std::string text() const { return output + errors; }
};

} // namespace orlimo
