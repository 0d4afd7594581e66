#include "tests/soak/ProcessUsage.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>

namespace orlimo {

namespace {

long entriesOf(const std::filesystem::path& folder)
{
    const std::filesystem::directory_iterator list(folder);
    return static_cast<long>(std::distance(begin(list), end(list)));
}

/// The number behind `name` in a file of names and numbers.
long numberIn(const std::string& text, const std::string& name)
{
    const std::size_t start = text.find("\n" + name + ":");
    EXPECT_NE(start, std::string::npos) << name << " is not in\n" << text;
    long number = 0;
    std::istringstream(text.substr(start + name.size() + 2)) >> number;
    return number;
}

} // namespace

ProcessUsage ProcessUsage::of(pid_t process)
{
    const std::filesystem::path folder = "/proc/" + std::to_string(process);
    const std::string memory = contentOf(folder / "smaps_rollup");
    return {
        .descriptors = entriesOf(folder / "fd"),
        .threads = entriesOf(folder / "task"),
        .resident = numberIn(memory, "Rss"),
        .anonymous = numberIn(memory, "Anonymous"),
    };
}

} // namespace orlimo
