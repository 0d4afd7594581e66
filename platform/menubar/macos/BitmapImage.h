#pragma once

#include "platform/process/macos/Retained.h"

#include <QImage>
#include <QSize>

#import <AppKit/AppKit.h>

namespace orlimo {

/// A bitmap of the system of that many pixels, all transparent: red, green, blue and alpha of one
/// byte each, premultiplied. Null when the system has no memory for it.
[[nodiscard]] Retained<NSBitmapImageRep*> makeBitmap(QSize pixels);

/// The pixels of `image` as a bitmap of the system.
[[nodiscard]] Retained<NSBitmapImageRep*> toBitmap(const QImage& image);

/// The pixels of a bitmap as makeBitmap() makes it.
[[nodiscard]] QImage toImage(NSBitmapImageRep* bitmap);

} // namespace orlimo
