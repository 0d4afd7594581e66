#include "platform/FatalStop.h"

#include "platform/linux/WriteAll.h"

#include <cstdlib>
#include <string>

#include <unistd.h>

namespace orlimo {

void fatalStop(std::string_view reason, const std::source_location& place)
{
    std::string line = "Orlimo stops at ";
    line.append(place.file_name()).append(":").append(std::to_string(place.line()));
    line.append(": ").append(reason).append("\n");
    writeAll(STDERR_FILENO, line);
    std::abort();
}

} // namespace orlimo
