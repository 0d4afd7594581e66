#include "platform/process/FatalStop.h"

#include "platform/files/WriteAll.h"

#include <cstdlib>
#include <string>

#include <unistd.h>

namespace orlimo {

void fatalStop(std::string_view reason, const char* file, int line)
{
    std::string message = "Orlimo stops at ";
    message.append(file).append(":").append(std::to_string(line));
    message.append(": ").append(reason).append("\n");
    writeAll(STDERR_FILENO, message);
    std::abort();
}

} // namespace orlimo
