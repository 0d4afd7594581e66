#include "tests/packaging/BuiltPackage.h"

#include "platform/files/UniqueFd.h"
#include "tests/packaging/CommandResult.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace orlimo {

namespace {

// The whole program, optimised, on a machine that has other things to do.
constexpr std::chrono::minutes buildTimeout{30};

} // namespace

BuiltPackage::BuiltPackage()
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
        buildTimeout);
    EXPECT_EQ(made.status, 0) << made.errors;
    if (made.status == 0) {
        const std::filesystem::path package = made.output.substr(0, made.output.find('\n'));
        fileName = package.filename().string();
        std::filesystem::copy_file(package, file());
    }
}

std::string BuiltPackage::field(const std::string& name) const
{
    const auto asked =
        CommandResult::of("/usr/bin/dpkg-deb", {.arguments = {"--field", file().string(), name}});
    EXPECT_EQ(asked.status, 0) << asked.errors;
    return asked.output.substr(0, asked.output.find('\n'));
}

} // namespace orlimo
