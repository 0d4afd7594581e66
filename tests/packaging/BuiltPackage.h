#pragma once

#include "platform/files/UniqueFd.h"
#include "tests/packaging/CommandResult.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace orlimo {

/// The Debian package of the program as the sources stand, in a folder of its own.
class BuiltPackage
{
public:
    /// Builds it; a test failure when that does not succeed. The build is kept for the next time,
    /// and waits while another process is at it.
    BuiltPackage()
    {
        const std::filesystem::path build = ORLIMO_PACKAGE_BUILD_FOLDER;
        std::filesystem::create_directories(build);
        const UniqueFd lock(
            ::open((build / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
        EXPECT_EQ(::flock(lock.get(), LOCK_EX), 0);
        const auto made = CommandResult::of(
            ORLIMO_PACKAGE_SCRIPT,
            {
                .arguments = {"--into", build.string()},
                // Whoever builds may keep their files to themselves; the package's are everybody's.
                .beforeStart = [] { ::umask(077); },
            },
            std::chrono::minutes(30)); // the whole program, optimised, on a busy machine
        EXPECT_EQ(made.status, 0) << made.errors;
        if (made.status == 0) {
            const std::filesystem::path package = made.output.substr(0, made.output.find('\n'));
            fileName = package.filename().string();
            std::filesystem::copy_file(package, file());
        }
    }

    [[nodiscard]] std::filesystem::path file() const { return folder.path() / "orlimo.deb"; }
    /// The name that the build gave it.
    [[nodiscard]] const std::string& name() const { return fileName; }

    /// A field of its description; empty when it has none of the name.
    [[nodiscard]] std::string field(const std::string& name) const
    {
        const auto asked = CommandResult::of(
            "/usr/bin/dpkg-deb", {.arguments = {"--field", file().string(), name}});
        EXPECT_EQ(asked.status, 0) << asked.errors;
        return asked.output.substr(0, asked.output.find('\n'));
    }

private:
    TemporaryFolder folder;
    std::string fileName;
};

} // namespace orlimo
