#include "platform/process/FatalStop.h"

#include "platform/files/WriteAll.h"

#include <cstdlib>
#include <string>

#include <unistd.h>

namespace orlimo {

void fatalStop(std::string_view reason, const char* file, int line)
{
    std::string words = "Orlimo stops at ";
    words.append(file).append(":").append(std::to_string(line));
    words.append(": ").append(reason).append("\n");
    writeAll(STDERR_FILENO, words);
    std::abort();
}

} // namespace orlimo
