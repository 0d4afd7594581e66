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

    /// The names of other libraries under which neither the system has one nor the bundle, each
    /// after the file that it stands in.
    [[nodiscard]] std::vector<std::string> namesLeadingOutside() const;

    /// The names that libraries have for themselves and that are paths of this machine.
    [[nodiscard]] std::vector<std::string> ownNamesLeadingOutside() const;

    /// The folders in which `file` says that libraries are.
    [[nodiscard]] static std::vector<std::string> searchFolders(const std::filesystem::path& file);

private:
    [[nodiscard]] bool isInside(const std::string& name, const std::filesystem::path& file) const;

    std::filesystem::path folder;
};

} // namespace orlimo
