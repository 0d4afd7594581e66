#pragma once

#include "platform/preferences/linux/SettingsText.h"

#include <QString>
#include <QVariantMap>

#include <functional>
#include <map>
#include <optional>
#include <string>

class QLockFile;

namespace orlimo {

/// The file in which preferences are stored, and which other programs may read and change too. Main
/// thread.
class SettingsFile
{
public:
    using Values = std::map<std::string, bool>;

    /// With the absolute path of the file, which need not exist.
    explicit SettingsFile(QString filePath);

    [[nodiscard]] const QString& path() const { return file; }

    /// The values stored now, read from the file at each call and good until the next. Empty where
    /// there is no file, or one that cannot be understood. Null where it cannot be read or is no
    /// regular file, which standard error reports once until it can be read again.
    [[nodiscard]] const QVariantMap* contents();

    /// Calls `valuesFor` with what is stored now and stores the values that it returns. The rest
    /// of the file stays; one that could not be understood is replaced, and kept in a copy. False
    /// where that cannot be done now: the file is as it was. Waits for another process that writes
    /// the file no longer than would be felt.
    [[nodiscard]] bool change(const std::function<Values(const QVariantMap& stored)>& valuesFor);

private:
    [[nodiscard]] const SettingsText* read();
    [[nodiscard]] const SettingsText* parse(const QByteArray& text);
    [[nodiscard]] bool acquire(QLockFile& lock, const QString& lockPath);
    [[nodiscard]] bool backUpDamagedFile() const;

    QString file;
    std::optional<SettingsText> latest;
    bool isReadable = true;
    bool wasLockAvailable = true;
};

} // namespace orlimo
