#include "platform/threads/macos/MainDispatchQueue.h"

#include <QGuiApplication>

namespace orlimo {

bool isMainDispatchQueueDrained()
{
    static const bool drained = QGuiApplication::platformName() == QLatin1String("cocoa");
    return drained;
}

} // namespace orlimo
