#include "platform/LogLine.h"

#include "platform/linux/WriteAll.h"

#include <string>

#include <unistd.h>

namespace orlimo {

void writeLogLine(std::string_view line)
{
    std::string bytes;
    bytes.reserve(line.size() + 1);
    bytes.append(line).push_back('\n');
    writeAll(STDOUT_FILENO, bytes);
}

} // namespace orlimo
