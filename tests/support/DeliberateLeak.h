#pragma once

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace orlimo {

/// While it lives, what this thread allocates is known to be never freed, on purpose: the leak
/// sanitizer says nothing about it. Put it around the one act that leaks by design.
class DeliberateLeak
{
public:
#if defined(__SANITIZE_ADDRESS__)
    DeliberateLeak()
    {
        __lsan_disable();
    }
    ~DeliberateLeak()
    {
        __lsan_enable();
    }
#else
    DeliberateLeak() {}  // NOLINT(modernize-use-equals-default): an object with a purpose, never
    ~DeliberateLeak() {} // NOLINT(modernize-use-equals-default): an unused variable
#endif
    DeliberateLeak(const DeliberateLeak&) = delete;
    DeliberateLeak& operator=(const DeliberateLeak&) = delete;
};

} // namespace orlimo
