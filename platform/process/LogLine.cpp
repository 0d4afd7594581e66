#include "platform/process/LogLine.h"

#include "platform/files/WriteAll.h"
#include "platform/process/EnvironmentVariable.h"
#include "platform/process/JournalStream.h"

#include <mutex>
#include <optional>
#include <string>

#include <unistd.h>

namespace orlimo {

namespace {

/// Whether standard output ends in the journal.
bool isOutputJournaled()
{
    // Read once: another thread may log while the main thread changes the environment.
    static const auto journal = JournalStream::parse(environmentVariable("JOURNAL_STREAM"));
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
    // Writes to a pipe are atomic only up to a page.
    static std::mutex outputMutex;
    const std::lock_guard guard(outputMutex);
    writeAll(STDOUT_FILENO, bytes);
}

} // namespace orlimo
