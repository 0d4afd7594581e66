#pragma once

#include <QString>

#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// A catalogue as its translator wrote it.
struct CatalogueFile
{
    struct Entry
    {
        QString context;
        QString source;
        QString translation;
        /// What marks the translation as unfinished, vanished or obsolete; empty when it is good.
        QString type;
    };

    QString language;
    QString sourceLanguage;
    std::vector<Entry> entries;

    /// What it has translations of: context and English text.
    [[nodiscard]] std::multiset<std::pair<std::string, std::string>> texts() const;

    /// Reads a .ts file; a test failure when it cannot be read.
    [[nodiscard]] static CatalogueFile read(const std::filesystem::path& file);
};

/// The .ts file of `language` among the program's sources.
[[nodiscard]] std::filesystem::path catalogueFileOf(const std::string& language);

/// The languages of all of them.
[[nodiscard]] const std::vector<std::string>& catalogueLanguages();

} // namespace orlimo
