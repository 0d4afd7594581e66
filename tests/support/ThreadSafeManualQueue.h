#pragma once

#include "tests/support/ManualQueue.h"

namespace orlimo {

using ThreadSafeManualQueue = ManualQueue;

} // namespace orlimo
