#pragma once

#include <QString>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// The environment variables that have a program load `libraries` ahead of its own: paths, or names
/// that the loader finds. The sanitizers let themselves be preceded that way.
[[nodiscard]] inline std::map<std::string, std::optional<std::string>>
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
