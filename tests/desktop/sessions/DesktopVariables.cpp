#include "tests/desktop/sessions/DesktopVariables.h"

namespace orlimo {

std::map<std::string, std::optional<std::string>> desktopVariables()
{
    std::map<std::string, std::optional<std::string>> variables{
        {"LC_ALL", "C.UTF-8"},
        {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"},
    };
    for (const char* variable :
         {"AT_SPI_BUS_ADDRESS",
          "BROWSER",
          "DESKTOP_SESSION",
          "DISPLAY",
          "KDE_FULL_SESSION",
          "KDE_SESSION_VERSION",
          "LANGUAGE",
          "QT_QPA_PLATFORM",
          "QT_QPA_PLATFORMTHEME",
          "QT_STYLE_OVERRIDE",
          "SWAYSOCK",
          "WAYLAND_DISPLAY",
          "WAYLAND_SOCKET",
          "XAUTHORITY",
          "XDG_CURRENT_DESKTOP",
          "XDG_SESSION_DESKTOP",
          "XDG_SESSION_TYPE"})
    {
        variables[variable] = std::nullopt;
    }
    return variables;
}

} // namespace orlimo
