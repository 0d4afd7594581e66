#include "platform/desktop/QtArguments.h"

#include <QByteArray>

namespace orlimo {

QtArguments::QtArguments(int argc, const char* const* argv)
    : texts(argv, argv + argc)
    , number(argc)
{
    // The toolkit would make a program with a Dock icon of this one and take the focus for it at
    // every start, login included.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", QByteArrayLiteral("1"));
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
}

} // namespace orlimo
