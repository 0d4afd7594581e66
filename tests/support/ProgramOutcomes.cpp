#include "tests/support/ProgramOutcomes.h"

#include "platform/process/FatalStop.h"
#include "platform/process/LogLine.h"

namespace orlimo {

namespace {

std::vector<std::string>& log()
{
    static std::vector<std::string> written;
    return written;
}

} // namespace

void logged::clear()
{
    log().clear();
}

const std::vector<std::string>& logged::lines()
{
    return log();
}

// Both take precedence over the platform's functions of the same name.

void fatalStop(std::string_view reason, const char* file, int /*line*/)
{
    throw FatalStopException{.reason = std::string(reason), .file = file};
}

void writeLogLine(std::string_view line)
{
    log().emplace_back(line);
}

} // namespace orlimo
