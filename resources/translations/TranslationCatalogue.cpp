#include "resources/translations/TranslationCatalogue.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

// The macro has to stand outside every namespace.
static void registerCatalogues()
{
    Q_INIT_RESOURCE(orlimo_translations);
}

namespace orlimo {

namespace {

/// The languages that have one catalogue for all their scripts and territories.
constexpr std::array<QStringView, 6> languagesWithoutVariants{
    u"de", u"es", u"fr", u"it", u"ja", u"ko"};

/// Tells our translators from the other children of the application object.
constexpr auto translatorName = "orlimo-translator";

bool isTraditionalChinese(const QStringList& subtags)
{
    const auto has = [&subtags](QStringView subtag) {
        return subtags.contains(subtag, Qt::CaseInsensitive);
    };
    return has(u"Hant") || (!has(u"Hans") && (has(u"TW") || has(u"HK") || has(u"MO")));
}

/// The catalogue for one wanted language; absent when there is none.
std::optional<TranslationCatalogue> catalogueFor(const QStringList& subtags)
{
    const QString language = subtags.first().toLower();
    if (language == u"zh") {
        return isTraditionalChinese(subtags)
                   ? TranslationCatalogue{QStringLiteral("zh_Hant"), QStringLiteral("zh_TW")}
                   : TranslationCatalogue{QStringLiteral("zh_Hans"), QStringLiteral("zh_CN")};
    }
    if (language == u"pt") {
        return TranslationCatalogue{QStringLiteral("pt_BR"), QStringLiteral("pt_BR")};
    }
    if (std::ranges::find(languagesWithoutVariants, QStringView(language)) !=
        languagesWithoutVariants.end())
    {
        return TranslationCatalogue{language, language};
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
            // Then a list in LANGUAGE, which the toolkit would follow, does not count.
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
