#include "tests/capture/PreferenceSandbox.h"

#include <cstdlib>

namespace orlimo {

PreferenceSandbox::PreferenceSandbox()
{
    std::filesystem::remove(file());
}

PreferenceSandbox::~PreferenceSandbox()
{
    std::error_code ignored;
    std::filesystem::remove(file(), ignored);
}

std::filesystem::path PreferenceSandbox::file()
{
    // Set by the main function of the test program, before any thread was started.
    const char* const configuration =
        std::getenv("XDG_CONFIG_HOME"); // NOLINT(concurrency-mt-unsafe)
    return std::filesystem::path(configuration) / "Orlimo/Orlimo.conf";
}

} // namespace orlimo
