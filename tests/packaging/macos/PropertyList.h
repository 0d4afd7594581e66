#pragma once

#include <QVariant>

#include <filesystem>
#include <string>

namespace orlimo {

/// A property list file, as a reader of such files understands it.
class PropertyList
{
public:
    /// Reads `file`; a test failure, and an empty list, when it is none.
    explicit PropertyList(const std::filesystem::path& file);

    /// All keys with their values: strings, truth values and lists of strings.
    [[nodiscard]] const QVariantMap& values() const { return all; }

    /// The text under `key`; empty when there is none.
    [[nodiscard]] std::string text(const char* key) const;

private:
    QVariantMap all;
};

} // namespace orlimo
