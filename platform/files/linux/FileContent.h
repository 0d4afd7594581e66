#pragma once

#include <filesystem>
#include <string>

namespace orlimo {

/// A file's content, or the errno value of the call that failed.
struct FileContent
{
    int error = 0;
    std::string text{};
};

/// The content of the regular file `file`. Fails with EISDIR for a folder, and with EEXIST for
/// anything else, which might never end, or never begin. Any thread.
[[nodiscard]] FileContent readRegularFile(const std::filesystem::path& file);

} // namespace orlimo
