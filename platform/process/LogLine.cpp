#include "platform/process/LogLine.h"

#include "platform/files/WriteAll.h"
#include "platform/process/JournalStream.h"

#include <cstdlib>
#include <mutex>
#include <optional>
#include <string>

#include <unistd.h>

namespace orlimo {

namespace {

/// Whether standard output ends in the journal.
bool isOutputJournaled()
{
    // Read once: another thread's line may come while the main thread changes the environment.
    static const auto journal = [] {
        const char* const value = std::getenv("JOURNAL_STREAM"); // NOLINT(concurrency-mt-unsafe)
        return value == nullptr ? std::nullopt : JournalStream::parse(value);
    }();
    return journal && journal->matches(STDOUT_FILENO);
}

} // namespace

void writeLogLine(std::string_view line)
{
    if (isOutputJournaled()) {
        return;
    }
    std::string bytes;
    bytes.reserve(line.size() + 1);
    bytes.append(line).push_back('\n');
    // A write to a pipe is whole only while it fits into a page.
    static std::mutex outputMutex;
    const std::lock_guard guard(outputMutex);
    writeAll(STDOUT_FILENO, bytes);
}

} // namespace orlimo
