#pragma once

// What most tests include.
#include "cmake/precompiled/core.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
