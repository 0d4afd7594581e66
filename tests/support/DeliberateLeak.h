#pragma once

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace orlimo {

/// While it lives, what this thread allocates is known to be never freed, on purpose: the leak
/// sanitizer says nothing about it. Put it around the one act that leaks by design.
#if defined(__SANITIZE_ADDRESS__)
using DeliberateLeak = __lsan::ScopedDisabler;
#else
struct DeliberateLeak
{
    ~DeliberateLeak() {} // NOLINT(modernize-use-equals-default): never an unused variable
};
#endif

} // namespace orlimo
