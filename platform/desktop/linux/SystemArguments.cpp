#include "platform/desktop/SystemArguments.h"

namespace orlimo {

std::size_t systemArgumentCount(std::span<const char* const> /*arguments*/)
{
    return 0;
}

} // namespace orlimo
