#pragma once

#include "tests/packaging/CommandResult.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <QStandardPaths>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// A folder of small scripts that are found before the system's programs and record each of their
/// calls.
class FakePrograms
{
public:
    FakePrograms()
        : systemPath(qEnvironmentVariable("PATH").toStdString())
    {
        writeFile(callsFile, "");
    }

    /// Adds a program that records its name and arguments and then does what `body`, in the shell's
    /// language, says.
    void add(const std::string& name, const std::string& body = "")
    {
        const auto file = path() / "bin" / name;
        writeFile(
            file,
            "#!/bin/sh\necho \"" + name + "${*:+ $*}\" >>\"" + callsFile.string() + "\"\n" + body +
                "\n");
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }

    /// Takes the system's programs away but for those that are named.
    void keepOnly(const std::vector<std::string>& programs)
    {
        for (const std::string& name : programs) {
            const auto found = QStandardPaths::findExecutable(QString::fromStdString(name));
            ASSERT_FALSE(found.isEmpty()) << name;
            std::filesystem::create_symlink(found.toStdString(), path() / "bin" / name);
        }
        systemPath.reset();
    }

    /// Each call so far: the name and the arguments.
    [[nodiscard]] std::vector<std::string> calls() const { return linesOf(contentOf(callsFile)); }

    /// How bash is started on a script with these programs on its path. `script` is a path in the
    /// tree, or absolute.
    [[nodiscard]] ChildSettings settings(
        const std::filesystem::path& script,
        const std::vector<std::string>& arguments,
        std::map<std::string, std::optional<std::string>> environment = {}) const
    {
        environment["PATH"] =
            (path() / "bin").string() + (systemPath ? ":" + *systemPath : std::string());
        std::vector<std::string> words{std::filesystem::path(ORLIMO_SOURCES) / script};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return {.arguments = std::move(words), .environment = std::move(environment)};
    }

    /// Runs a script like that to its end.
    [[nodiscard]] CommandResult
    run(const std::filesystem::path& script,
        const std::vector<std::string>& arguments,
        std::map<std::string, std::optional<std::string>> environment = {}) const
    {
        return CommandResult::of(
            "/bin/bash",
            settings(script, arguments, std::move(environment)),
            std::chrono::minutes(4));
    }

    [[nodiscard]] const std::filesystem::path& path() const { return folder.path(); }

private:
    TemporaryFolder folder;
    std::filesystem::path callsFile = folder.path() / "calls";
    std::optional<std::string> systemPath;
};

} // namespace orlimo
