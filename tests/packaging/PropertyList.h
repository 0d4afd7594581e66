#pragma once

#include <QVariant>

#include <filesystem>
#include <string>

namespace orlimo {

/// A property list file, as a reader of such files understands it.
struct PropertyList
{
    /// Reads `file`; a test failure, and an empty list, when it is none.
    explicit PropertyList(const std::filesystem::path& file);

    /// The text under `key`; empty when there is none.
    [[nodiscard]] std::string text(const char* key) const
    {
        return values.value(QLatin1String(key)).toString().toStdString();
    }

    /// All keys with their values: strings, truth values and lists of strings.
    QVariantMap values;
};

} // namespace orlimo
