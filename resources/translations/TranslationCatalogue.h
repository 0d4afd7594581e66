#pragma once

#include <QString>
#include <QStringList>

#include <optional>

class QCoreApplication;

namespace orlimo {

/// A language other than English that the program speaks.
struct TranslationCatalogue
{
    /// As the program's own file is named: "de", "pt_BR", "zh_Hant".
    QString language;
    /// As the toolkit's file is named: "de", "pt_BR", "zh_TW".
    QString qtLanguage;

    /// The catalogue for a user who wants `languages`, best first, each as in "de-AT", "zh_Hant_HK"
    /// or "fr". Absent when English serves that user best.
    [[nodiscard]] static std::optional<TranslationCatalogue>
    forLanguages(const QStringList& languages);
};

/// The languages that the user wants for what programs say, best first.
[[nodiscard]] QStringList userLanguages();

/// Lets the program and the toolkit speak to a user who wants `languages`, instead of those of an
/// earlier call. The translators belong to `application`. Main thread.
void installTranslations(
    QCoreApplication& application, const QStringList& languages = userLanguages());

} // namespace orlimo
