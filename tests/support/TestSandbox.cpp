#include "tests/support/TestSandbox.h"

#include <array>
#include <filesystem>
#include <string>

#include <stdlib.h>

namespace orlimo {

namespace {

/// Set once the process lives in a home of its own.
constexpr const char* sandboxMarker = "ORLIMO_TEST_SANDBOX";

/// Leads every folder of the user into `home`, so that no test touches those of whoever runs it,
/// and away from the user's desktop session.
void moveInto(const std::filesystem::path& home)
{
    const std::array<std::pair<const char*, const char*>, 7> folders{{
        {"HOME", ""},
        // Where Foundation looks for a home.
        {"CFFIXED_USER_HOME", ""},
        {"XDG_CONFIG_HOME", ".config"},
        {"XDG_DATA_HOME", ".local/share"},
        {"XDG_STATE_HOME", ".local/state"},
        {"XDG_CACHE_HOME", ".cache"},
        {"XDG_RUNTIME_DIR", ".runtime"},
    }};
    for (const auto& [variable, folder] : folders) {
        const auto path = *folder == '\0' ? home : home / folder;
        std::filesystem::create_directories(path);
        ::setenv(variable, path.c_str(), 1);
    }
    std::filesystem::permissions(home / ".runtime", std::filesystem::perms::owner_all);
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

} // namespace

TestSandbox::TestSandbox()
{
    // A death test starts the program anew, inside the home that is already its own; one that it
    // made for itself would outlive its abort.
    if (::getenv(sandboxMarker) == nullptr) {
        moveInto(home.emplace().path());
        ::setenv(sandboxMarker, "1", 1);
    }
}

} // namespace orlimo
