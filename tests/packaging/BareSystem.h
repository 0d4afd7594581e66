#pragma once

#include "tests/packaging/CommandResult.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace orlimo {

/// A Debian with nothing in it but what every Debian has, in a folder of its own. Made from this
/// system's archive, which takes a minute.
class BareSystem
{
public:
    BareSystem();

    /// Why there is none: no rights, no network. Empty when there is one.
    [[nodiscard]] const std::string& skipReason() const { return setupFailure; }

    [[nodiscard]] std::filesystem::path tree() const { return folder.path() / "tree"; }
    /// The home folder of the user, seen from outside.
    [[nodiscard]] std::filesystem::path home() const { return tree() / "home/user"; }

    /// Runs a command in it to its end.
    [[nodiscard]] CommandResult run(const std::vector<std::string>& command) const;

    /// Starts a program in it, on the X display.
    [[nodiscard]] std::unique_ptr<ChildProcess>
    start(const std::string& program, const std::string& display) const;

    /// Every file in it but those of apt and dpkg themselves, the user's and passing ones.
    [[nodiscard]] std::set<std::string> files() const;

    /// The names of the installed packages.
    [[nodiscard]] std::set<std::string> packages() const;

private:
    TemporaryFolder folder;
    std::string setupFailure;
};

} // namespace orlimo
