#pragma once

#include <system_error>

#import <Foundation/Foundation.h>

namespace orlimo {

/// The error of the kernel that a service of the system reports, in the generic category: its own
/// code where it is the kernel's, that of the error that it stands upon, or the nearest to its own
/// meaning. EIO for nil and for what says nothing of the kind.
[[nodiscard]] std::error_code toErrorCode(NSError* error);

} // namespace orlimo
