#pragma once

#include "tests/packaging/CommandResult.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// Fakes of the tools of macOS, which note their calls in a file, and what they stand on.
class MacTools
{
public:
    /// Notes calls in `callsFile`.
    explicit MacTools(std::filesystem::path callsFile)
        : calls(std::move(callsFile))
    {}

    /// The environment in which programs find the fakes, and no settings for signing.
    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const;

    /// Runs `script`, one of packaging/macos, with the fakes, to its end. `changes` are made to
    /// the environment.
    [[nodiscard]] CommandResult
    run(const std::string& script,
        std::vector<std::string> arguments,
        const std::map<std::string, std::optional<std::string>>& changes = {}) const;

    /// How the fakes were called until now.
    [[nodiscard]] std::vector<std::string> recordedCalls() const;

    /// Makes what is taken from a Mac with Homebrew in `folder`.
    void makeHomebrew(const std::filesystem::path& folder) const;

    /// Makes a library for `architecture` and the macOS `system` in `file`.
    void makeLibrary(
        const std::filesystem::path& file,
        const std::string& architecture,
        const std::string& system) const;

private:
    std::filesystem::path calls;
};

} // namespace orlimo
