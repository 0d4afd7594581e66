#include "tests/app/Appearance.h"

#include "resources/translations/Languages.h"
#include "resources/translations/TranslationCatalogue.h"

#include <QApplication>

#include <algorithm>
#include <cctype>

namespace orlimo {

LanguageChange::LanguageChange(const QString& language)
{
    installTranslations(*qApp, {language});
}

LanguageChange::~LanguageChange()
{
    installTranslations(*qApp, {QStringLiteral("en")});
}

FontChange::FontChange(const QFont& font)
    : before(QApplication::font())
{
    QApplication::setFont(font);
}

FontChange::~FontChange()
{
    QApplication::setFont(before);
}

std::vector<Appearance> allAppearances()
{
    std::vector<Appearance> appearances{
        {"en", "DejaVu Sans"},
        {"es", "Inter"},
        {"es", "Noto Sans CJK JP"},
        {"pt_BR", "Noto Sans CJK JP"},
        {"ja", "Noto Sans CJK JP"}};
    for (const Language& language : supportedLanguages) {
        appearances.push_back({language.catalogue.toString().toStdString(), "DejaVu Sans"});
    }
    return appearances;
}

std::string nameOf(const Appearance& appearance)
{
    std::string name = appearance.language + appearance.fontFamily;
    std::erase_if(name, [](unsigned char character) { return std::isalnum(character) == 0; });
    return name;
}

} // namespace orlimo
