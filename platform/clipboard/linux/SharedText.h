#pragma once

#include <memory>
#include <string>

namespace orlimo {

/// A text that several readers are served from, each at its own pace. Never null.
using SharedText = std::shared_ptr<const std::string>;

} // namespace orlimo
