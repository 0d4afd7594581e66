#pragma once

#include <chrono>
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
    [[nodiscard]] static ProcessUsage of(pid_t process);
};

/// What was seen in the course of a soak.
struct SoakRecord
{
    /// One look at the program while it was at rest.
    struct Sample
    {
        std::chrono::milliseconds time{};
        /// How often it had read the newest messages by then.
        long checks = 0;
        ProcessUsage usage;
    };

    std::vector<Sample> samples;
    std::size_t messages = 0;
    /// Codes that had to be copied, and those that were not.
    long expected = 0;
    long missed = 0;
    long windowOpenings = 0;
    long trayRestarts = 0;
    long preferenceChanges = 0;
    long clipboardLosses = 0;
    /// From the commit's end to the line that names the copied code.
    std::vector<std::chrono::microseconds> delays;
    long statementCost = 0;

    /// How many bytes without a file behind them each check has added: the slope of the line that
    /// fits the looks best.
    [[nodiscard]] double bytesPerCheck() const;

    /// For people, a line for each fact and a table of at most `rows` looks.
    [[nodiscard]] std::string summary(std::size_t rows) const;
};

} // namespace orlimo
