#pragma once

#include <filesystem>

namespace orlimo {

/// The settings file of this process's own home. Absent when the object is made, and again when it
/// goes.
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
