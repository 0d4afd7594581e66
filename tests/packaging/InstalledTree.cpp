#include "tests/packaging/InstalledTree.h"

#include "tests/packaging/CommandResult.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace orlimo {

InstalledTree::InstalledTree()
{
    const auto installation = CommandResult::of(
        ORLIMO_CMAKE,
        {
            .arguments = {"--install", ORLIMO_BUILD_FOLDER},
            .environment = {{"DESTDIR", root.path().string()}},
            // As an administrator installs; folders follow it.
            .beforeStart = [] { ::umask(022); },
        });
    EXPECT_EQ(installation.status, 0) << installation.text();
}

std::filesystem::path InstalledTree::file(const std::filesystem::path& name) const
{
    const std::filesystem::path prefix = ORLIMO_INSTALL_PREFIX;
    return root.path() / prefix.relative_path() / name;
}

std::map<std::string, std::string> InstalledTree::content() const
{
    std::map<std::string, std::string> found;
    const auto prefix = file("");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(prefix)) {
        const auto mode = static_cast<unsigned>(entry.symlink_status().permissions());
        found.emplace(
            entry.path().lexically_relative(prefix).string() + (entry.is_directory() ? "/" : ""),
            std::to_string(mode / 64) + std::to_string(mode / 8 % 8) + std::to_string(mode % 8));
    }
    return found;
}

std::string InstalledTree::programPath()
{
    return (std::filesystem::path(ORLIMO_INSTALL_PREFIX) / "bin/orlimo").string();
}

} // namespace orlimo
