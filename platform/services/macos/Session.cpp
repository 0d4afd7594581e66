#include "platform/services/Session.h"

#include "platform/clipboard/macos/GeneralPasteboard.h"

#include <QByteArray>

namespace orlimo {

Session detectSession(int argc, const char* const* argv)
{
    // Qt would make a program with a Dock icon of this one and take the focus for it at every
    // start, login included.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", QByteArrayLiteral("1"));
    return {.arguments = QtArguments(argc, argv), .makePasteboard = makeGeneralPasteboard};
}

} // namespace orlimo
