#include "platform/desktop/linux/PaletteScheme.h"

#include "platform/desktop/ColorScheme.h"

#include <QApplication>
#include <QStyle>
#include <QStyleHints>

namespace orlimo {

namespace {

/// Whether Qt itself knows and follows the desktop's colour scheme.
bool isColorSchemeKnownToQt()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    return QGuiApplication::styleHints()->colorScheme() != Qt::ColorScheme::Unknown;
#else
    return false;
#endif
}

/// A portal and the palette that follows it, owned by the application object.
class ColorSchemeFollower final : public QObject
{
public:
    explicit ColorSchemeFollower(QObject* owner)
        : QObject(owner)
        , portal(
              QDBusConnection::sessionBus(), [this](ColorScheme scheme) { palette.follow(scheme); })
    {}

private:
    PaletteScheme palette;
    ColorSchemePortal portal;
};

} // namespace

QPalette darkPaletteOf(const QPalette& palette)
{
    const QColor window(36, 37, 41);
    const QColor text(242, 242, 245);
    const QColor base(28, 29, 32);
    const QColor disabledText(142, 142, 147);
    QPalette dark(
        text, window, QColor(70, 71, 76), QColor(20, 20, 23), QColor(48, 49, 54), text, base);
    dark.setColor(QPalette::Button, QColor(54, 55, 60));
    dark.setColor(QPalette::AlternateBase, window);
    dark.setColor(QPalette::BrightText, Qt::white);
    dark.setColor(QPalette::ToolTipBase, base);
    dark.setColor(QPalette::ToolTipText, text);
    dark.setColor(QPalette::PlaceholderText, disabledText);
    dark.setColor(QPalette::Link, QColor(98, 160, 234));
    dark.setColor(QPalette::LinkVisited, QColor(192, 97, 203));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        dark.setColor(QPalette::Disabled, role, disabledText);
    }
    dark.setColor(QPalette::Highlight, palette.color(QPalette::Highlight));
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    dark.setColor(QPalette::Accent, palette.color(QPalette::Accent));
#endif
    dark.setColor(QPalette::HighlightedText, palette.color(QPalette::HighlightedText));
    return dark;
}

void PaletteScheme::follow(ColorScheme scheme)
{
    const bool isDarkPreferred = scheme == ColorScheme::dark;
    if (isDarkPreferred == isDark || !canSetPalette()) {
        return;
    }
    isDark = isDarkPreferred;
    // An empty palette restores Qt's own.
    QApplication::setPalette(isDark ? darkPaletteOf(QApplication::palette()) : QPalette());
}

bool PaletteScheme::canSetPalette() const
{
    return isDark || (!isColorSchemeKnownToQt() &&
                      QApplication::palette() == QApplication::style()->standardPalette());
}

void followColorScheme()
{
    new ColorSchemeFollower(qApp);
}

} // namespace orlimo
