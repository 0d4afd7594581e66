#pragma once

#include <filesystem>
#include <string>

namespace orlimo {

/// A configuration of the window manager for each desktop that starts from now on, as long as it
/// lives.
class OpenboxConfiguration
{
public:
    /// `focus` is what stands in the configuration's element of that name.
    explicit OpenboxConfiguration(const std::string& focus);
    OpenboxConfiguration(const OpenboxConfiguration&) = delete;
    OpenboxConfiguration& operator=(const OpenboxConfiguration&) = delete;
    ~OpenboxConfiguration();

private:
    std::filesystem::path file;
};

} // namespace orlimo
