#pragma once

#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <string>

namespace orlimo {

/// The Debian package of the program as the sources stand, in a folder of its own.
class BuiltPackage
{
public:
    /// Builds it; a test failure when that does not succeed. The build is kept for the next time,
    /// and waits while another process is at it.
    BuiltPackage();

    [[nodiscard]] std::filesystem::path file() const { return folder.path() / "orlimo.deb"; }
    /// The name that the build gave it.
    [[nodiscard]] const std::string& name() const { return fileName; }

    /// A field of its description; empty when it has none of the name.
    [[nodiscard]] std::string field(const std::string& name) const;

private:
    TemporaryFolder folder;
    std::string fileName;
};

} // namespace orlimo
