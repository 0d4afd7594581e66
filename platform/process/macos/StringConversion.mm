#include "platform/process/macos/StringConversion.h"

#include <QString>
#include <QStringDecoder>

#import <Foundation/Foundation.h>

namespace orlimo {

namespace {

/// Replaces each unpaired surrogate by U+FFFD; Qt would write a question mark.
void replaceUnpairedSurrogates(QString& text)
{
    for (qsizetype index = 0; index < text.size(); ++index) {
        const bool beginsPair = text.at(index).isHighSurrogate() && index + 1 < text.size() &&
                                text.at(index + 1).isLowSurrogate();
        if (beginsPair) {
            ++index;
        } else if (text.at(index).isSurrogate()) {
            text[index] = QChar::ReplacementCharacter;
        }
    }
}

} // namespace

NSString* toNSString(std::string_view utf8)
{
    // Through Qt, which replaces ill-formed bytes; NSString would return nil. A byte order mark at
    // the beginning is part of the text.
    using Flag = QStringDecoder::Flag;
    QStringDecoder decoder(QStringDecoder::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    const QString text = decoder(QByteArrayView(utf8.data(), static_cast<qsizetype>(utf8.size())));
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
    replaceUnpairedSurrogates(units);
    return units.toStdString();
}

} // namespace orlimo
