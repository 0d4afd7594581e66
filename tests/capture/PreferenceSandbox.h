#pragma once

#include <filesystem>

namespace orlimo {

/// The settings file of this process's sandboxed home, removed at construction and destruction.
class PreferenceSandbox
{
public:
    PreferenceSandbox();
    PreferenceSandbox(const PreferenceSandbox&) = delete;
    PreferenceSandbox& operator=(const PreferenceSandbox&) = delete;
    ~PreferenceSandbox();

    /// Where the preferences are stored.
    [[nodiscard]] static std::filesystem::path file();
};

} // namespace orlimo
