#include "tests/platform/preferences/UserDefaultsStore.h"

#include <cstdlib>
#include <filesystem>

namespace orlimo {

void clearUserDefaults()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): never set here
    std::filesystem::remove_all(std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "Orlimo");
}

} // namespace orlimo
