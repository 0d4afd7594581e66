#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orlimo {

/// A program's file as the loader sees it, described by readelf.
class ElfProgram
{
public:
    /// Reads `file`; one that cannot be read is a test failure.
    explicit ElfProgram(const std::filesystem::path& file);

    [[nodiscard]] const std::string& header() const { return headerText; }
    [[nodiscard]] const std::string& segments() const { return segmentsText; }
    [[nodiscard]] const std::string& dynamicSection() const { return dynamicText; }
    [[nodiscard]] const std::string& notes() const { return notesText; }

    /// The names, without versions, that the program takes from its libraries.
    [[nodiscard]] const std::vector<std::string>& imports() const { return importedNames; }

private:
    std::string headerText;
    std::string segmentsText;
    std::string dynamicText;
    std::string notesText;
    std::vector<std::string> importedNames;
};

} // namespace orlimo
