#include "tests/support/process/PreloadEnvironment.h"

#include <QString>

namespace orlimo {

std::map<std::string, std::optional<std::string>>
preloadEnvironment(const std::vector<std::string>& libraries)
{
    std::string list;
    for (const std::string& library : libraries) {
        list += (list.empty() ? "" : ":") + library;
    }
    return {
        {"LD_PRELOAD", list},
        // libnss_wrapper would bind the C library past the sanitizer, which stops the program for
        // it.
        {"NSS_WRAPPER_DISABLE_DEEPBIND", "1"},
        {"ASAN_OPTIONS",
         qEnvironmentVariable("ASAN_OPTIONS").toStdString() + ":verify_asan_link_order=0"},
    };
}

} // namespace orlimo
