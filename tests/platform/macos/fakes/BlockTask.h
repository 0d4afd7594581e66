#pragma once

#include <functional>
#include <memory>

#include <Block.h>
#import <dispatch/dispatch.h>

namespace orlimo {

/// A block as a function that owns a copy of it.
[[nodiscard]] inline std::function<void()> taskOf(dispatch_block_t block)
{
    const std::shared_ptr<void> copy(_Block_copy(block), _Block_release);
    return [copy] { reinterpret_cast<dispatch_block_t>(copy.get())(); };
}

} // namespace orlimo
