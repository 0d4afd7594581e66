#pragma once

#include "capture/Preferences.h"

#include <QtGlobal>

#include <array>
#include <string_view>

namespace orlimo {

/// One row of the panel's options: a text and the switch for a preference.
struct PanelSwitch
{
    /// In English; translated in the context "orlimo::PopupView".
    const char* text;
    std::string_view preferenceKey;
    /// The minimum width of the text's frame, in points; 0 for no frame.
    int minTextWidth = 0;
};

/// The minimum width of a framed text, in points.
inline constexpr int framedTextWidth = 120;

/// The switches from top to bottom.
inline constexpr std::array panelSwitches{
    PanelSwitch{
        QT_TRANSLATE_NOOP("orlimo::PopupView", "Auto Copy to Clipboard"),
        preference::capturingEnabled},
    PanelSwitch{
        QT_TRANSLATE_NOOP("orlimo::PopupView", "Include 4 digit code"),
        preference::fourDigitInclude,
        framedTextWidth},
    PanelSwitch{
        QT_TRANSLATE_NOOP("orlimo::PopupView", "Launch at login"),
        preference::loginItemEnabled,
        framedTextWidth},
};

} // namespace orlimo
