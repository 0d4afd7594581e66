#pragma once

#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>

#include <sys/types.h>

namespace orlimo {

/// What every program on a tests' desktop has in its environment, whatever the desktop: English
/// texts, texts for assistive technology, and nothing of the desktop of whoever runs the tests.
[[nodiscard]] inline std::map<std::string, std::optional<std::string>> desktopVariables()
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

/// Which of `programs` this machine lacks, in words; empty when it has all.
[[nodiscard]] inline std::string
missingProgram(std::initializer_list<std::filesystem::path> programs)
{
    for (const auto& program : programs) {
        if (!std::filesystem::exists(program)) {
            return "there is no " + program.string();
        }
    }
    return "";
}

/// By which of Qt's platforms the program `process` is on the screen: "wayland", "xcb", or nothing
/// as long as it has none.
[[nodiscard]] inline std::string platformOf(pid_t process)
{
    const std::string loaded = contentOf("/proc/" + std::to_string(process) + "/maps");
    if (loaded.find("/platforms/libqwayland") != std::string::npos) {
        return "wayland";
    }
    return loaded.find("/platforms/libqxcb") != std::string::npos ? "xcb" : "";
}

} // namespace orlimo
