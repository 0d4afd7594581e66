#pragma once

#include <QString>

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
    /// Values as they stand in the file, by their keys.
    using Contents = std::map<std::string, std::string>;

    /// With the absolute path of the file, which need not exist.
    explicit SettingsFile(QString filePath);

    [[nodiscard]] const QString& path() const { return file; }

    /// The values stored now, read from the file at each call. Empty where there is no file, or one
    /// that cannot be parsed. Absent where it cannot be read or is no regular file, which standard
    /// error reports once until it can be read again.
    [[nodiscard]] std::optional<Contents> contents();

    /// Calls `valuesFor` with what is stored now and stores the values that it returns. The rest
    /// of the file stays, comments included; one that cannot be parsed is replaced, and kept in a
    /// copy. False where that cannot be done now: the file is as it was. Waits for another process
    /// that writes the file, but not noticeably.
    [[nodiscard]] bool change(const std::function<Values(const Contents& stored)>& valuesFor);

private:
    [[nodiscard]] std::optional<std::string> read();
    [[nodiscard]] bool acquire(QLockFile& lock, const QString& lockPath);
    [[nodiscard]] bool backUpDamagedFile() const;

    QString file;
    /// The text that was parsed last, and what it contains: the same text is not parsed again.
    std::optional<std::string> parsedText;
    Contents parsedContents;
    bool isReadable = true;
    bool wasLockAvailable = true;
};

} // namespace orlimo
