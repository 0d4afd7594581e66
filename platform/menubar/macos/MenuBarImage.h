#pragma once

#include "platform/process/macos/Retained.h"

#include <QIcon>

#import <AppKit/AppKit.h>

namespace orlimo {

/// The edge of an image in the menu bar, in points.
inline constexpr int menuBarImageEdge = 16;

/// `label` as the menu bar shows it: square, sharp at one and at two pixels a point. An icon that
/// is a mask becomes a template, which follows the menu bar's colour. Main thread.
[[nodiscard]] Retained<NSImage*> menuBarImage(const QIcon& label);

} // namespace orlimo
