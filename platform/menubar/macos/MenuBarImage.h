#pragma once

#include "platform/process/macos/Retained.h"

#include <QIcon>

#import <AppKit/AppKit.h>

namespace orlimo {

/// The edge of an image in the menu bar, in points.
inline constexpr int menuBarImageEdge = 16;

/// `label` for the menu bar: square, with representations for scale factors 1 and 2. A mask icon
/// becomes a template image, which takes on the menu bar's colour. Main thread.
[[nodiscard]] Retained<NSImage*> menuBarImage(const QIcon& label);

} // namespace orlimo
