#include "tests/packaging/macos/LinkedBundle.h"

#include "tests/packaging/CommandResult.h"
#include "tests/support/OutputCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orlimo {

namespace {

std::vector<std::string> listing(const std::string& option, const std::filesystem::path& file)
{
    const auto result =
        CommandResult::of(ORLIMO_LLVM_OTOOL, {.arguments = {option, file.string()}});
    EXPECT_EQ(result.status, 0) << result.text();
    return linesOf(result.output);
}

/// What a file calls itself; empty when it is not a library.
std::string ownName(const std::filesystem::path& file)
{
    const auto lines = listing("-D", file);
    return lines.size() < 2 ? "" : lines[1];
}

bool isCode(const std::filesystem::path& file)
{
    return contentOf(file).starts_with("\xCF\xFA\xED\xFE");
}

} // namespace

std::vector<std::string> LinkedBundle::libraries() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(contents() / "Frameworks")) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

std::vector<std::filesystem::path> LinkedBundle::codeFiles() const
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(contents())) {
        if (!entry.is_symlink() && entry.is_regular_file() && isCode(entry.path())) {
            files.push_back(entry.path());
        }
    }
    return files;
}

std::vector<std::string> LinkedBundle::namesLeadingOutside() const
{
    const std::string program = "@executable_path/";
    std::vector<std::string> found;
    for (const auto& file : codeFiles()) {
        const std::string own = ownName(file);
        if (own.starts_with('/')) {
            found.push_back(file.string() + ": " + own);
        }
        for (const auto& line : listing("-L", file)) {
            const std::string name = line.substr(0, line.find(" (compatibility")).substr(1);
            const bool isSystems = name.starts_with("/usr/lib/") || name.starts_with("/System/");
            const bool isInside =
                name.starts_with(program) &&
                std::filesystem::exists(contents() / "MacOS" / name.substr(program.size()));
            if (line.starts_with('\t') && name != own && !isSystems && !isInside) {
                found.push_back(file.string() + ": " + name);
            }
        }
    }
    return found;
}

bool LinkedBundle::hasSearchPath(const std::filesystem::path& file)
{
    return std::ranges::any_of(listing("-l", file), [](const auto& line) {
        return line.find("cmd LC_RPATH") != std::string::npos;
    });
}

} // namespace orlimo
