// AppKit as the system has it: what GNUstep's lacks is added to it.
#pragma once

#include "declared/NSWorkspaceOpenConfiguration.h"

#include_next <AppKit/AppKit.h>
