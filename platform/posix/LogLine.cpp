#include "platform/LogLine.h"

#include "platform/posix/WriteAll.h"

#include <mutex>
#include <string>

#include <unistd.h>

namespace orlimo {

void writeLogLine(std::string_view line)
{
    std::string bytes;
    bytes.reserve(line.size() + 1);
    bytes.append(line).push_back('\n');
    // A write to a pipe is whole only while it fits into a page.
    static std::mutex oneLineAtATime;
    const std::lock_guard guard(oneLineAtATime);
    writeAll(STDOUT_FILENO, bytes);
}

} // namespace orlimo
