#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orlimo {

/// A bundle whose files are in macOS's format, and how they name each other.
class LinkedBundle
{
public:
    explicit LinkedBundle(std::filesystem::path bundle)
        : folder(std::move(bundle))
    {}

    [[nodiscard]] const std::filesystem::path& path() const { return folder; }
    [[nodiscard]] std::filesystem::path contents() const { return folder / "Contents"; }

    /// What lies in Frameworks, in order of the names.
    [[nodiscard]] std::vector<std::string> libraries() const;

    /// The program, the libraries, the frameworks' own and the plugins.
    [[nodiscard]] std::vector<std::filesystem::path> codeFiles() const;

    /// The names of other libraries under which neither the system has one nor the bundle, and the
    /// names that libraries have for themselves and that are paths of this machine, each after the
    /// file that it stands in.
    [[nodiscard]] std::vector<std::string> namesLeadingOutside() const;

    /// Whether `file` says where libraries are, which may be elsewhere on this machine.
    [[nodiscard]] static bool hasSearchPath(const std::filesystem::path& file);

private:
    std::filesystem::path folder;
};

} // namespace orlimo
