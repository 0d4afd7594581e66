#include "platform/UserDefaults.h"
#include "platform/linux/BooleanValue.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QMetaType>
#include <QSettings>
#include <QString>
#include <QVariant>

#include <cstdio>
#include <memory>
#include <optional>
#include <utility>

namespace orlimo {

namespace {

QString asKey(std::string_view key)
{
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

bool asBool(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return booleanValue(value.toString().toStdString());
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return value.toDouble() != 0;
    default:
        return false;
    }
}

/// One state of the settings file.
struct FileState
{
    qint64 size = 0;
    QDateTime changed;

    friend bool operator==(const FileState&, const FileState&) = default;
};

/// The settings file of the application "Orlimo" of the organisation "Orlimo", in the folder where
/// the desktop's own rules put it.
QString settingsFileName()
{
    const QString name = QStringLiteral("Orlimo");
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, name, name).fileName();
}

/// Preferences in the settings file of the user's configuration folder.
class SettingsUserDefaults final : public UserDefaults
{
public:
    [[nodiscard]] bool boolForKey(std::string_view key) const override
    {
        const auto settings = read();
        return settings && asBool(settings->value(asKey(key)));
    }

    void setBool(bool value, std::string_view key) override
    {
        keepDamagedFile();
        auto settings = open();
        settings->setValue(asKey(key), value);
        settings->sync();
        if (settings->status() == QSettings::AccessError) {
            (void)std::fprintf(
                stderr, "Orlimo cannot store preferences in %s\n", qUtf8Printable(fileName));
        }
    }

    [[nodiscard]] std::map<std::string, std::string> dictionaryRepresentation() const override
    {
        std::map<std::string, std::string> dictionary;
        if (const auto settings = read()) {
            for (const QString& key : settings->allKeys()) {
                dictionary.emplace(
                    key.toStdString(), settings->value(key).toString().toStdString());
            }
        }
        return dictionary;
    }

private:
    /// A new object for each access: it looks whether the file has changed, and an error of one
    /// access is not reported by the next. Opened by the file's name: opened by the application's,
    /// it would read the fallback files too.
    [[nodiscard]] std::unique_ptr<QSettings> open() const
    {
        return std::make_unique<QSettings>(fileName, QSettings::NativeFormat);
    }

    [[nodiscard]] FileState stateOfFile() const
    {
        const QFileInfo file(fileName);
        return {file.size(), file.lastModified()};
    }

    /// The store as it is now, re-read if another process changed it; null when it is damaged.
    [[nodiscard]] std::unique_ptr<QSettings> read() const
    {
        auto settings = open();
        if (settings->status() == QSettings::FormatError) {
            damaged = stateOfFile();
        } else if (damaged && damaged != stateOfFile()) {
            damaged.reset();
        }
        return damaged ? nullptr : std::move(settings);
    }

    /// The first write replaces a file that could not be understood: what the user had in it is
    /// kept in a copy.
    void keepDamagedFile() const
    {
        const auto settings = read();
        const bool understood = settings && !settings->allKeys().isEmpty();
        if (understood || QFileInfo(fileName).size() == 0) {
            return;
        }
        const QString copy = fileName + QStringLiteral(".damaged");
        if (QFile::copy(fileName, copy)) {
            (void)std::fprintf(
                stderr,
                "Orlimo cannot understand its preferences; the old file is kept as %s\n",
                qUtf8Printable(copy));
        }
    }

    const QString fileName = settingsFileName();

    /// The state in which the file was found damaged. Kept because QSettings reports a damaged file
    /// only to the access that parses it, and parses it again only when it has changed.
    mutable std::optional<FileState> damaged;
};

} // namespace

UserDefaults& standardUserDefaults()
{
    static SettingsUserDefaults defaults;
    return defaults;
}

} // namespace orlimo
