#pragma once

#include <string>

namespace orlimo {

/// Why a request to a service of the system failed.
struct ServiceError
{
    int code = 0;
    /// The system's message for the user, UTF-8.
    std::string localizedDescription;
};

} // namespace orlimo
