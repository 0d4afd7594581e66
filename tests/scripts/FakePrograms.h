#pragma once

#include "tests/packaging/CommandResult.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// A folder of small scripts that are found before the system's programs and note each of their
/// calls.
class FakePrograms
{
public:
    FakePrograms();

    /// Adds a program that notes its name and arguments and then does what `body`, in the shell's
    /// language, says.
    void add(const std::string& name, const std::string& body = "");

    /// Leaves a program of the system's out: it is not found any more, nor is any that was not
    /// named by `keep`.
    void keepOnly(const std::vector<std::string>& programs);

    /// Each call so far: the name and the arguments.
    [[nodiscard]] std::vector<std::string> calls() const;

    /// How bash is started on a script with these programs on its path. `script` is a path in the
    /// tree, or absolute.
    [[nodiscard]] ChildSettings settings(
        const std::filesystem::path& script,
        const std::vector<std::string>& arguments,
        std::map<std::string, std::optional<std::string>> environment = {}) const;

    /// Runs a script like that to its end.
    [[nodiscard]] CommandResult
    run(const std::filesystem::path& script,
        const std::vector<std::string>& arguments,
        std::map<std::string, std::optional<std::string>> environment = {}) const;

    [[nodiscard]] std::filesystem::path path() const { return folder.path(); }

private:
    TemporaryFolder folder;
    std::optional<std::string> systemPath;
};

} // namespace orlimo
