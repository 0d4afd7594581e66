#pragma once

// What most tests of windows include.
#include "cmake/precompiled/tests.h"
#include "cmake/precompiled/widgets.h"
