// AppKit as the system has it: what GNUstep's lacks is added to it.
#pragma once

#include "declared/NSApplication.h"
#include "declared/NSEvent.h"
#include "declared/NSGraphics.h"
#include "declared/NSImage.h"
#include "declared/NSImageSymbolConfiguration.h"
#include "declared/NSStatusItem.h"
#include "declared/NSView.h"
#include "declared/NSWorkspaceOpenConfiguration.h"

#include_next <AppKit/AppKit.h>
