#include "platform/macos/StringConversion.h"

#include "platform/ToQString.h"

#import <Foundation/Foundation.h>

namespace orlimo {

NSString* toNSString(std::string_view utf8)
{
    // By way of the toolkit, which replaces what is ill-formed; the system would give nothing.
    const QString text = toQString(utf8);
    return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(text.utf16())
                                   length:static_cast<NSUInteger>(text.size())];
}

std::string toUtf8(NSString* text)
{
    if (text == nil) {
        return {};
    }
    QString units(static_cast<qsizetype>([text length]), Qt::Uninitialized);
    [text getCharacters:reinterpret_cast<unichar*>(units.data())
                  range:NSMakeRange(0, [text length])];
    return units.toStdString();
}

} // namespace orlimo
