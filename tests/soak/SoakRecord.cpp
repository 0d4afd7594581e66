#include "tests/soak/SoakRecord.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <iterator>
#include <sstream>

namespace orlimo {

namespace {

constexpr double bytesPerKib = 1024;

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

double inSeconds(std::chrono::milliseconds time)
{
    return std::chrono::duration<double>(time).count();
}

double inMilliseconds(std::chrono::microseconds time)
{
    return std::chrono::duration<double, std::milli>(time).count();
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

double SoakRecord::bytesPerCheck() const
{
    const auto count = static_cast<double>(samples.size());
    double checks = 0;
    double memory = 0;
    for (const Sample& sample : samples) {
        checks += static_cast<double>(sample.checks) / count;
        memory += static_cast<double>(sample.usage.anonymous) / count;
    }
    double together = 0;
    double alone = 0;
    for (const Sample& sample : samples) {
        const double distance = static_cast<double>(sample.checks) - checks;
        together += distance * (static_cast<double>(sample.usage.anonymous) - memory);
        alone += distance * distance;
    }
    return alone > 0 ? together / alone * bytesPerKib : 0;
}

std::string SoakRecord::summary(std::size_t rows) const
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(1);
    text << messages << " messages, " << expected << " codes to copy, " << missed << " missed\n"
         << windowOpenings << " openings of the window, " << preferenceChanges
         << " changes of preferences from outside, " << clipboardLosses
         << " times the clipboard was another's, " << trayRestarts << " new trays\n";
    if (!delays.empty()) {
        auto sorted = delays;
        std::ranges::sort(sorted);
        text << "from commit to copied: median " << inMilliseconds(sorted[sorted.size() / 2])
             << " ms, longest " << inMilliseconds(sorted.back()) << " ms\n";
    }
    text << "one compiled statement: " << statementCost << " bytes; each check added "
         << bytesPerCheck() << " bytes\n";
    text << " seconds  checks  descriptors  threads  resident KiB  anonymous KiB\n";
    const std::size_t step = std::max<std::size_t>(1, (samples.size() + rows - 1) / rows);
    for (std::size_t index = 0; index < samples.size(); ++index) {
        if (index % step != 0 && index + 1 != samples.size()) {
            continue;
        }
        const Sample& sample = samples[index];
        text << std::setw(8) << inSeconds(sample.time) << std::setw(8) << sample.checks
             << std::setw(13) << sample.usage.descriptors << std::setw(9) << sample.usage.threads
             << std::setw(14) << sample.usage.resident << std::setw(15) << sample.usage.anonymous
             << '\n';
    }
    return text.str();
}

} // namespace orlimo
