#pragma once

#include <QString>

#include <filesystem>
#include <string>
#include <vector>

namespace orlimo {

/// A text of a catalogue as its translator wrote it.
struct CatalogueEntry
{
    QString context;
    QString source;
    QString translation;
    /// What marks the translation as unfinished, vanished or obsolete; empty when it is good.
    QString type;
};

/// The texts of a .ts file; a test failure when it cannot be read.
[[nodiscard]] std::vector<CatalogueEntry> readCatalogue(const std::filesystem::path& file);

/// The .ts file of `language` among the program's sources.
[[nodiscard]] std::filesystem::path catalogueFileOf(const std::string& language);

/// The languages of all of them.
[[nodiscard]] std::vector<std::string> catalogueLanguages();

} // namespace orlimo
