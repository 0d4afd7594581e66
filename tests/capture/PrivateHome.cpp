#include "tests/capture/PrivateHome.h"

#include <cstdlib>
#include <filesystem>
#include <string>

#include <stdlib.h>
#include <unistd.h>

namespace orlimo {

void switchToPrivateHome()
{
    // No thread has been started yet.
    const std::filesystem::path shared = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe)
    std::string home = shared / "home-XXXXXX";
    if (::mkdtemp(home.data()) == nullptr) {
        std::abort();
    }
    ::setenv("HOME", home.c_str(), 1);                           // NOLINT(concurrency-mt-unsafe)
    ::setenv("CFFIXED_USER_HOME", home.c_str(), 1);              // NOLINT(concurrency-mt-unsafe)
    ::setenv("XDG_CONFIG_HOME", (home + "/.config").c_str(), 1); // NOLINT(concurrency-mt-unsafe)
}

} // namespace orlimo
