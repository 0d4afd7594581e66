#include "platform/desktop/QtArguments.h"

#include <QByteArray>

namespace orlimo {

QtArguments::QtArguments(int argc, const char* const* argv)
    : texts(argv, argv + argc)
    , number(argc)
{
    // Qt would turn this agent into a program with a Dock icon and take the focus at every start,
    // also at login.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", QByteArrayLiteral("1"));
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
}

} // namespace orlimo
