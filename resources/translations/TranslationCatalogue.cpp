#include "resources/translations/TranslationCatalogue.h"

#include "resources/translations/Languages.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

// The macro has to stand outside every namespace.
static void registerCatalogues()
{
    Q_INIT_RESOURCE(orlimo_translations);
}

namespace orlimo {

namespace {

/// Tells our translators from the other children of the application object.
constexpr auto translatorName = "orlimo-translator";

bool isTraditionalChinese(const QStringList& subtags)
{
    const auto has = [&subtags](QStringView subtag) {
        return subtags.contains(subtag, Qt::CaseInsensitive);
    };
    return has(u"Hant") || (!has(u"Hans") && (has(u"TW") || has(u"HK") || has(u"MO")));
}

/// The catalogue for one preferred language; absent when there is none. Where a language has
/// several, they differ by the script; otherwise its one catalogue serves all scripts and
/// territories.
std::optional<TranslationCatalogue> catalogueFor(const QStringList& subtags)
{
    const QString language = subtags.first().toLower();
    const QStringView script = language != u"zh"               ? QStringView()
                               : isTraditionalChinese(subtags) ? QStringView(u"Hant")
                                                               : QStringView(u"Hans");
    for (const Language& candidate : supportedLanguages) {
        const auto parts = candidate.catalogue.split(u'_');
        if (parts.first() == language && (script.isEmpty() || parts.last() == script)) {
            return TranslationCatalogue{
                candidate.catalogue.toString(), candidate.locale.toString()};
        }
    }
    return std::nullopt;
}

void install(QCoreApplication& application, const QString& file, const QString& folder)
{
    auto translator = std::make_unique<QTranslator>();
    if (translator->load(file, folder)) {
        translator->setObjectName(QLatin1String(translatorName));
        translator->setParent(&application);
        QCoreApplication::installTranslator(translator.release());
    }
}

} // namespace

std::optional<TranslationCatalogue> TranslationCatalogue::forLanguages(const QStringList& languages)
{
    for (QString language : languages) {
        const QStringList subtags = language.replace(u'_', u'-').split(u'-');
        if (subtags.first().compare(u"en", Qt::CaseInsensitive) == 0) {
            return std::nullopt;
        }
        if (auto catalogue = catalogueFor(subtags)) {
            return catalogue;
        }
    }
    return std::nullopt;
}

QStringList userLanguages()
{
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QByteArray locale = qgetenv(variable);
        if (locale == "C" || locale == "POSIX") {
            // Qt would follow a list in LANGUAGE even then.
            return {QStringLiteral("C")};
        }
        if (!locale.isEmpty()) {
            break;
        }
    }
    return QLocale::system().uiLanguages();
}

void installTranslations(QCoreApplication& application, const QStringList& languages)
{
    registerCatalogues();
    qDeleteAll(application.findChildren<QTranslator*>(
        QLatin1String(translatorName), Qt::FindDirectChildrenOnly));
    if (const auto catalogue = TranslationCatalogue::forLanguages(languages)) {
        install(
            application,
            QStringLiteral("qtbase_") + catalogue->qtLanguage,
            QLibraryInfo::path(QLibraryInfo::TranslationsPath));
        install(
            application,
            QStringLiteral("orlimo_") + catalogue->language,
            QStringLiteral(":/translations"));
    }
}

} // namespace orlimo
