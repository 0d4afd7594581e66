#pragma once

#import <objc/runtime.h>

namespace orlimo {

/// Puts `replacement` in the place of what `method` does and returns what that was.
template <typename Function> Function replaceMethod(Method method, Function replacement)
{
    return reinterpret_cast<Function>(
        method_setImplementation(method, reinterpret_cast<IMP>(replacement)));
}

} // namespace orlimo
