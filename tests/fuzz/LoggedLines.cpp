#include "tests/fuzz/LoggedLines.h"

#include "platform/process/LogLine.h"

namespace orlimo {

namespace logged {

namespace {

std::vector<std::string>& log()
{
    static std::vector<std::string> written;
    return written;
}

} // namespace

void clear()
{
    log().clear();
}

const std::vector<std::string>& lines()
{
    return log();
}

} // namespace logged

/// Stands before the platform's function of the same name.
void writeLogLine(std::string_view line)
{
    logged::log().emplace_back(line);
}

} // namespace orlimo
