#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace orlimo {

/// An empty folder of its own for one test, removed with everything in it at the end. Its path has
/// no link in it.
class TemporaryFolder
{
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return folder; }

private:
    std::filesystem::path folder;
};

/// Makes `folder` one that only the user may enter, as programs expect of their runtime folder, and
/// returns it.
std::filesystem::path makePrivateFolder(const std::filesystem::path& folder);

/// Whether the file system can have a file of that name, which is not there yet: some want every
/// name to be text.
[[nodiscard]] bool supportsFileName(const std::filesystem::path& file);

/// The whole content of a file; a test failure and empty when it cannot be read.
[[nodiscard]] std::string contentOf(const std::filesystem::path& file);

/// Makes `file` hold exactly `content`, its parent folders included.
void writeFile(const std::filesystem::path& file, std::string_view content);

/// Lengthens `file` by `content`, with one write.
void appendToFile(const std::filesystem::path& file, std::string_view content);

} // namespace orlimo
