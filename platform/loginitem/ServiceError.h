#pragma once

#include <string>

namespace orlimo {

/// Why a service of the host did not do what it was asked.
struct ServiceError
{
    int code = 0;
    /// For the user's eyes, UTF-8, in the system's own words.
    std::string localizedDescription;
};

} // namespace orlimo
