#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace orlimo {

/// How many descriptors this process has open, the one for counting among them.
inline std::size_t openDescriptors()
{
    const std::filesystem::directory_iterator list("/dev/fd");
    return static_cast<std::size_t>(std::distance(begin(list), end(list)));
}

} // namespace orlimo
