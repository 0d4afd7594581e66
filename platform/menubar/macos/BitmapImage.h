#pragma once

#include "platform/process/macos/Retained.h"

#include <QImage>
#include <QSize>

#import <AppKit/AppKit.h>

namespace orlimo {

/// A transparent system bitmap of that size: red, green, blue and alpha of one byte each,
/// premultiplied. Null if the system has no memory for it.
[[nodiscard]] Retained<NSBitmapImageRep*> makeBitmap(QSize pixels);

/// Converts `image` to a system bitmap.
[[nodiscard]] Retained<NSBitmapImageRep*> toBitmap(const QImage& image);

/// Converts a bitmap in the format of makeBitmap().
[[nodiscard]] QImage toImage(NSBitmapImageRep* bitmap);

} // namespace orlimo
