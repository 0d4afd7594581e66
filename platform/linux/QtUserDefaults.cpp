#include "platform/ToQString.h"
#include "platform/UserDefaults.h"
#include "platform/linux/BooleanValue.h"
#include "platform/posix/UniqueFd.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QMetaType>
#include <QSettings>
#include <QString>
#include <QTemporaryFile>
#include <QVariant>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include <sys/mman.h>
#include <sys/stat.h>

namespace orlimo {

namespace {

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

/// The settings that one text stands for.
///
/// QSettings remembers what it read from a file by the file's name, size and time in whole
/// milliseconds, keeps a value that it could not write as if it were stored, and reports a damaged
/// file to one reader only. So it never sees the user's file: it is given the text in a file in
/// memory, which differs in time from every one before.
class SettingsText
{
public:
    explicit SettingsText(const QByteArray& text)
        : descriptor(::memfd_create("settings", MFD_CLOEXEC))
    {
        const QString name = QStringLiteral("/proc/self/fd/%1").arg(descriptor.get());
        QFile file(name);
        isWhole =
            descriptor && file.open(QIODevice::WriteOnly) && file.write(text) >= 0 && file.flush();
        file.close();
        static std::time_t lastTime = 0;
        const timespec time{++lastTime, 0};
        const std::array<timespec, 2> accessAndChange{time, time};
        (void)::futimens(descriptor.get(), accessAndChange.data());
        settings = std::make_unique<QSettings>(name, QSettings::NativeFormat);
        // Lines are understood only when they are asked for; damage is not reported before.
        (void)settings->allKeys();
    }

    /// Whether the host had the memory for it. Without, nothing here says anything about the text.
    [[nodiscard]] bool isAvailable() const { return isWhole; }

    [[nodiscard]] bool isDamaged() const
    {
        return isWhole && settings->status() == QSettings::FormatError;
    }

    const QSettings* operator->() const { return settings.get(); }

private:
    UniqueFd descriptor;
    bool isWhole = false;
    std::unique_ptr<QSettings> settings;
};

/// The settings file of the application "Orlimo" of the organisation "Orlimo", in the folder where
/// the desktop's own rules put it.
QString settingsFileName()
{
    const QString name = QStringLiteral("Orlimo");
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, name, name).fileName();
}

/// How long another process that writes the file is waited for, in milliseconds.
constexpr int longestWaitForLock = 2000;

/// How old a lock has to be, in milliseconds, to be taken away when its file does not name a holder
/// who is alive: one that was killed before it had written its name leaves an empty file. From a
/// holder who is alive none is taken, for the host's own lock on the file keeps it.
constexpr int namelessLockAge = 250;

/// Preferences in the settings file of the user's configuration folder.
class SettingsUserDefaults final : public UserDefaults
{
public:
    [[nodiscard]] bool boolForKey(std::string_view key) const override
    {
        const auto present = stored();
        return present && asBool(present->settings->value(toQString(key)));
    }

    void setBool(bool value, std::string_view key) override
    {
        if (!keepDamagedFile() || !store(value, key, isReadable)) {
            (void)std::fprintf(
                stderr, "Orlimo cannot store preferences in %s\n", qUtf8Printable(file));
        }
    }

    [[nodiscard]] std::map<std::string, std::string> dictionaryRepresentation() const override
    {
        std::map<std::string, std::string> dictionary;
        const auto present = stored();
        if (!present) {
            return dictionary;
        }
        const SettingsText& settings = present->settings;
        for (const QString& key : settings->allKeys()) {
            dictionary.emplace(key.toStdString(), settings->value(key).toString().toStdString());
        }
        return dictionary;
    }

private:
    /// The file's content and what it stands for; both are empty when it is damaged.
    struct Stored
    {
        QByteArray text;
        SettingsText settings;
    };

    /// Puts a new file with the changed content in the place of the old one. Where the store is not
    /// `isKnown`, because it could not be read, a value that turns out to be there stays.
    [[nodiscard]] bool store(bool value, std::string_view key, bool isKnown) const
    {
        const QFileInfo present(file);
        const QString target = present.exists() ? present.canonicalFilePath() : file;
        (void)QDir().mkpath(QFileInfo(target).path());
        // The lock under which every other user of the format writes.
        QLockFile lock(target + QStringLiteral(".lock"));
        lock.setStaleLockTime(namelessLockAge);
        if (!lock.tryLock(longestWaitForLock)) {
            return false;
        }
        const auto old = stored();
        if (!old || (!isKnown && old->settings->contains(toQString(key)))) {
            return false; // what is in it would be lost
        }
        QTemporaryFile changed(target + QStringLiteral(".XXXXXX"));
        if (!changed.open() || changed.write(old->text) < 0 || !changed.flush()) {
            return false;
        }
        if (present.exists()) {
            changed.setPermissions(present.permissions());
        }
        QSettings settings(changed.fileName(), QSettings::NativeFormat);
        settings.setValue(toQString(key), value);
        settings.sync();
        if (settings.status() != QSettings::NoError ||
            std::rename(
                QFile::encodeName(changed.fileName()).constData(),
                QFile::encodeName(target).constData()) != 0)
        {
            return false;
        }
        changed.setAutoRemove(false);
        return true;
    }

    /// Nothing where there is no file; absent where there is one, or may be, that cannot be read
    /// now.
    [[nodiscard]] std::optional<QByteArray> content() const
    {
        QFile opened(file);
        if (opened.open(QIODevice::ReadOnly)) {
            QByteArray text = opened.readAll();
            return opened.error() == QFileDevice::NoError ? std::optional(std::move(text))
                                                          : std::nullopt;
        }
        std::error_code unknown;
        const auto found = std::filesystem::status(QFile::encodeName(file).toStdString(), unknown);
        return found.type() == std::filesystem::file_type::not_found ? std::optional(QByteArray())
                                                                     : std::nullopt;
    }

    /// What is stored now. Absent where it cannot be read, which is said once until it can be
    /// again.
    [[nodiscard]] std::optional<Stored> stored() const
    {
        auto present = understood(content());
        if (std::exchange(isReadable, present.has_value()) && !isReadable) {
            (void)std::fprintf(
                stderr, "Orlimo cannot read its preferences in %s\n", qUtf8Printable(file));
        }
        return present;
    }

    [[nodiscard]] static std::optional<Stored> understood(std::optional<QByteArray> text)
    {
        if (!text) {
            return std::nullopt;
        }
        SettingsText settings(*text);
        if (settings.isDamaged()) {
            return Stored{QByteArray(), SettingsText(QByteArray())};
        }
        return settings.isAvailable() ? std::optional(Stored{*std::move(text), std::move(settings)})
                                      : std::nullopt;
    }

    /// The first write replaces a file that could not be understood: what the user had in it is
    /// kept in a copy. False where that cannot be made.
    [[nodiscard]] bool keepDamagedFile() const
    {
        const auto text = content();
        if (!text || !SettingsText(*text).isDamaged()) {
            return true;
        }
        const QString copy = file + QStringLiteral(".damaged");
        if (QFile::copy(file, copy)) {
            (void)std::fprintf(
                stderr,
                "Orlimo cannot understand its preferences; the old file is kept as %s\n",
                qUtf8Printable(copy));
            return true;
        }
        return QFile::exists(copy);
    }

    mutable bool isReadable = true;
    const QString file = settingsFileName();
};

} // namespace

UserDefaults& standardUserDefaults()
{
    static SettingsUserDefaults defaults;
    return defaults;
}

} // namespace orlimo
