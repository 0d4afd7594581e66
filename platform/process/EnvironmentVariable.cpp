#include "platform/process/EnvironmentVariable.h"

#include <cstdlib>

namespace orlimo {

std::string environmentVariable(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): main thread only
    return value == nullptr ? std::string() : value;
}

} // namespace orlimo
