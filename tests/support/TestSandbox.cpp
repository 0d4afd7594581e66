#include "tests/support/TestSandbox.h"

#include <string>
#include <utility>

#include <stdlib.h>

namespace orlimo {

TestSandbox::TestSandbox()
{
    // A death test starts the program anew, inside the home that is already its own; one that it
    // made for itself would outlive its abort.
    constexpr const char* marker = "ORLIMO_TEST_SANDBOX";
    if (::getenv(marker) != nullptr) {
        return;
    }
    ::setenv(marker, "1", 1);
    const auto path = home.emplace().path();
    for (const auto& [variable, folder] : {
             std::pair("HOME", ""),
             // Where Foundation looks for a home.
             std::pair("CFFIXED_USER_HOME", ""),
             std::pair("XDG_CONFIG_HOME", ".config"),
             std::pair("XDG_DATA_HOME", ".local/share"),
             std::pair("XDG_STATE_HOME", ".local/state"),
             std::pair("XDG_CACHE_HOME", ".cache"),
             std::pair("XDG_RUNTIME_DIR", ".runtime"),
         })
    {
        const std::string own = (*folder == '\0' ? path : path / folder).string();
        std::filesystem::create_directories(own);
        ::setenv(variable, own.c_str(), 1);
    }
    makePrivateFolder(path / ".runtime");
    for (const char* variable :
         {"DBUS_SESSION_BUS_ADDRESS",
          "DISPLAY",
          "SESSION_MANAGER",
          "WAYLAND_DISPLAY",
          "XDG_SESSION_TYPE"})
    {
        ::unsetenv(variable);
    }
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
}

} // namespace orlimo
