#pragma once

#include <QFont>
#include <QString>

#include <ostream>
#include <string>
#include <vector>

namespace orlimo {

/// Lets the application speak another language for as long as it lives; English before and after.
class LanguageChange
{
public:
    explicit LanguageChange(const QString& language);
    LanguageChange(const LanguageChange&) = delete;
    LanguageChange& operator=(const LanguageChange&) = delete;
    ~LanguageChange();
};

/// Gives the application another font for as long as it lives.
class FontChange
{
public:
    explicit FontChange(const QFont& font);
    FontChange(const FontChange&) = delete;
    FontChange& operator=(const FontChange&) = delete;
    ~FontChange();

private:
    QFont before;
};

/// A language and a system font in which a window is to look right.
struct Appearance
{
    std::string language;
    std::string fontFamily;
};

/// Every language the program speaks in a wide font; some also in fonts whose accents or
/// overhangs need the whole line.
[[nodiscard]] std::vector<Appearance> allAppearances();

/// The appearance as a part of a test's name.
[[nodiscard]] std::string nameOf(const Appearance& appearance);

inline void PrintTo(const Appearance& appearance, std::ostream* stream)
{
    *stream << appearance.language << " in " << appearance.fontFamily;
}

} // namespace orlimo
