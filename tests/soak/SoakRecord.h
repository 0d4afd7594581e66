#pragma once

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <sys/types.h>

namespace orlimo {

/// What a process takes at one moment, as the kernel counts it.
struct ProcessUsage
{
    long descriptors = 0;
    long threads = 0;
    /// Resident memory in KiB: all of it, and the part that no file backs.
    long resident = 0;
    long anonymous = 0;

    /// Of the running process `process`. What cannot be read is a test failure.
    [[nodiscard]] static ProcessUsage of(pid_t process)
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

private:
    static long entriesOf(const std::filesystem::path& folder)
    {
        const std::filesystem::directory_iterator list(folder);
        return static_cast<long>(std::distance(begin(list), end(list)));
    }

    /// The number behind `name` in a file of names and numbers.
    static long numberIn(const std::string& text, const std::string& name)
    {
        const std::size_t start = text.find("\n" + name + ":");
        EXPECT_NE(start, std::string::npos) << name << " is not in\n" << text;
        return std::stol(text.substr(start + name.size() + 2));
    }
};

/// What was seen in the course of a soak.
struct SoakRecord
{
    /// One look at the program while it was at rest.
    struct Sample
    {
        std::chrono::duration<double> time{};
        /// How often it had read the newest messages by then.
        long checks = 0;
        ProcessUsage usage;
    };

    std::vector<Sample> samples;
    std::size_t messages = 0;
    /// Codes that had to be copied, and those that were not.
    long expected = 0;
    long missed = 0;
    /// From the commit's end to the line that names the copied code, in milliseconds.
    std::vector<double> delays;
    /// In bytes.
    long statementCost = 0;

    /// For people, a line for each fact and a table of at most `rows` looks.
    [[nodiscard]] std::string summary(std::size_t rows) const
    {
        std::ostringstream text;
        text << std::fixed << std::setprecision(1);
        text << messages << " messages, " << expected << " codes to copy, " << missed << " missed, "
             << samples.size() << " usage periods\n";
        if (!delays.empty()) {
            auto sorted = delays;
            std::ranges::sort(sorted);
            text << "from commit to copied: median " << sorted[sorted.size() / 2] << " ms, longest "
                 << sorted.back() << " ms\n";
        }
        text << "one compiled statement: " << statementCost << " bytes\n"
             << " seconds  checks  descriptors  threads  resident KiB  anonymous KiB\n";
        const std::size_t step = std::max<std::size_t>(1, (samples.size() + rows - 1) / rows);
        for (std::size_t index = 0; index < samples.size(); ++index) {
            if (index % step == 0 || index + 1 == samples.size()) {
                const auto& [time, checks, usage] = samples[index];
                text << std::setw(8) << time.count() << std::setw(8) << checks << std::setw(13)
                     << usage.descriptors << std::setw(9) << usage.threads << std::setw(14)
                     << usage.resident << std::setw(15) << usage.anonymous << '\n';
            }
        }
        return text.str();
    }
};

} // namespace orlimo
