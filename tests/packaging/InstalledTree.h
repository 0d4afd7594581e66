#pragma once

#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <map>
#include <string>

namespace orlimo {

/// What the build installs, in a folder that stands for the root of a system.
class InstalledTree
{
public:
    /// Installs; a test failure when that does not succeed.
    InstalledTree();

    /// Where an installed file lies: `name` is its path below the configured prefix.
    [[nodiscard]] std::filesystem::path file(const std::filesystem::path& name) const;

    /// The folder that programs look for desktop files, icons and descriptions in.
    [[nodiscard]] std::filesystem::path dataFolder() const { return file("share"); }

    /// Every folder and file below the prefix, by its path there, with its permissions in octal;
    /// folders end in a slash.
    [[nodiscard]] std::map<std::string, std::string> content() const;

    /// Where the program believes itself to be installed.
    [[nodiscard]] static std::string programPath();

private:
    TemporaryFolder root;
};

} // namespace orlimo
