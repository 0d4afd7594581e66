#pragma once

#include <QCoreApplication>
#include <QString>

namespace orlimo {

/// A text to be looked up in the program's translations: its context and its English wording, as
/// QT_TRANSLATE_NOOP marks them. Both live to the end of the process.
struct LocalizedStringKey
{
    const char* context = nullptr;
    const char* key = nullptr;

    /// The text in the user's language; the key itself where there is no translation.
    [[nodiscard]] QString localized() const { return QCoreApplication::translate(context, key); }
};

} // namespace orlimo
