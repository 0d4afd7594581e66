#include "tests/packaging/CommandResult.h"

#include "tests/support/process/ParentDeathSignal.h"

#include <utility>

namespace orlimo {

CommandResult CommandResult::of(
    const std::filesystem::path& program, ChildSettings settings, std::chrono::milliseconds limit)
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

} // namespace orlimo
