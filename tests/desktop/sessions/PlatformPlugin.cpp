#include "tests/desktop/sessions/PlatformPlugin.h"

#include "tests/support/TemporaryFolder.h"

namespace orlimo {

std::string platformOf(pid_t process)
{
    const std::string loaded = contentOf("/proc/" + std::to_string(process) + "/maps");
    if (loaded.find("/platforms/libqwayland") != std::string::npos) {
        return "wayland";
    }
    return loaded.find("/platforms/libqxcb") != std::string::npos ? "xcb" : "";
}

} // namespace orlimo
