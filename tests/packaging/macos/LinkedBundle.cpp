#include "tests/packaging/macos/LinkedBundle.h"

#include "tests/packaging/CommandResult.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace orlimo {

namespace {

std::vector<std::string> linesOf(const std::string& option, const std::filesystem::path& file)
{
    const auto listing =
        CommandResult::of(ORLIMO_LLVM_OTOOL, {.arguments = {option, file.string()}});
    EXPECT_EQ(listing.status, 0) << listing.text();
    std::istringstream stream(listing.output);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// What a file calls itself; empty when it is not a library.
std::string ownName(const std::filesystem::path& file)
{
    const auto lines = linesOf("-D", file);
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

bool LinkedBundle::isInside(const std::string& name, const std::filesystem::path& file) const
{
    const auto below = [&name](const std::string& beginning, const std::filesystem::path& place) {
        return name.starts_with(beginning) &&
               std::filesystem::exists(place / name.substr(beginning.size()));
    };
    return below("@rpath/", contents() / "Frameworks") ||
           below("@loader_path/", file.parent_path()) ||
           below("@executable_path/", contents() / "MacOS");
}

std::vector<std::string> LinkedBundle::namesLeadingOutside() const
{
    std::vector<std::string> found;
    for (const auto& file : codeFiles()) {
        const std::string own = ownName(file);
        for (const auto& line : linesOf("-L", file)) {
            const std::string name = line.substr(0, line.find(" (compatibility")).substr(1);
            const bool isSystems = name.starts_with("/usr/lib/") || name.starts_with("/System/");
            if (line.starts_with('\t') && name != own && !isSystems && !isInside(name, file)) {
                found.push_back(file.string() + ": " + name);
            }
        }
    }
    return found;
}

std::vector<std::string> LinkedBundle::ownNamesLeadingOutside() const
{
    std::vector<std::string> found;
    for (const auto& file : codeFiles()) {
        if (const std::string own = ownName(file); own.starts_with('/')) {
            found.push_back(file.string() + ": " + own);
        }
    }
    return found;
}

std::vector<std::string> LinkedBundle::searchFolders(const std::filesystem::path& file)
{
    std::vector<std::string> found;
    bool isNext = false;
    for (const auto& line : linesOf("-l", file)) {
        isNext = isNext || line.find("cmd LC_RPATH") != std::string::npos;
        const auto start = line.find("path ");
        if (isNext && start != std::string::npos) {
            found.push_back(line.substr(start + 5, line.find(" (offset") - start - 5));
            isNext = false;
        }
    }
    return found;
}

} // namespace orlimo
