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
    /// As Qt's own file is named: "de", "pt_BR", "zh_TW".
    QString qtLanguage;

    /// The catalogue for a user who prefers `languages`, best first, each as in "de-AT",
    /// "zh_Hant_HK" or "fr". Absent when English serves that user best.
    [[nodiscard]] static std::optional<TranslationCatalogue>
    forLanguages(const QStringList& languages);
};

/// The user's languages for the texts of programs, best first.
[[nodiscard]] QStringList userLanguages();

/// Has the program and Qt speak to a user who prefers `languages`, replacing those of an earlier
/// call. `application` owns the translators. Main thread.
void installTranslations(
    QCoreApplication& application, const QStringList& languages = userLanguages());

} // namespace orlimo
