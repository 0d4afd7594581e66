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
    std::vector<Appearance> appearances;
    std::vector<std::string> spoken{"en"};
    for (const Language& language : supportedLanguages) {
        spoken.push_back(language.catalogue.toString().toStdString());
    }
    for (const std::string& language : spoken) {
        for (const char* family : {"DejaVu Sans", "Inter", "Noto Sans CJK JP"}) {
            appearances.push_back({language, family});
        }
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
