#include "tests/fuzz/FatalStopException.h"

#include "platform/process/FatalStop.h"

namespace orlimo {

/// Stands before the platform's function of the same name.
void fatalStop(std::string_view reason, const char* /*file*/, int /*line*/)
{
    throw FatalStopException{std::string(reason)};
}

} // namespace orlimo
