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
#include <memory>
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
        if (file.open(QIODevice::WriteOnly)) {
            file.write(text);
        }
        file.close();
        static std::time_t lastTime = 0;
        const timespec time{++lastTime, 0};
        const std::array<timespec, 2> accessAndChange{time, time};
        (void)::futimens(descriptor.get(), accessAndChange.data());
        settings = std::make_unique<QSettings>(name, QSettings::NativeFormat);
        // Lines are understood only when they are asked for; damage is not reported before.
        (void)settings->allKeys();
    }

    [[nodiscard]] bool isDamaged() const { return settings->status() == QSettings::FormatError; }

    const QSettings* operator->() const { return settings.get(); }

private:
    UniqueFd descriptor;
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

/// Preferences in the settings file of the user's configuration folder.
class SettingsUserDefaults final : public UserDefaults
{
public:
    [[nodiscard]] bool boolForKey(std::string_view key) const override
    {
        const SettingsText settings(content());
        return !settings.isDamaged() && asBool(settings->value(toQString(key)));
    }

    void setBool(bool value, std::string_view key) override
    {
        keepDamagedFile();
        if (!store(value, key)) {
            (void)std::fprintf(
                stderr, "Orlimo cannot store preferences in %s\n", qUtf8Printable(file));
        }
    }

    [[nodiscard]] std::map<std::string, std::string> dictionaryRepresentation() const override
    {
        std::map<std::string, std::string> dictionary;
        const SettingsText settings(understoodContent());
        for (const QString& key : settings->allKeys()) {
            dictionary.emplace(key.toStdString(), settings->value(key).toString().toStdString());
        }
        return dictionary;
    }

private:
    /// Puts a new file with the changed content in the place of the old one.
    [[nodiscard]] bool store(bool value, std::string_view key) const
    {
        const QFileInfo present(file);
        if (present.exists() && !present.isReadable()) {
            return false; // what is in it would be lost
        }
        const QString target = present.exists() ? present.canonicalFilePath() : file;
        (void)QDir().mkpath(QFileInfo(target).path());
        // The lock under which every other user of the format writes.
        QLockFile lock(target + QStringLiteral(".lock"));
        if (!lock.tryLock(longestWaitForLock)) {
            return false;
        }
        auto changed = changedFile(target, understoodContent(), value, key);
        if (changed && SettingsText(contentOf(changed->fileName())).isDamaged()) {
            // Odd files are understood at first, and no longer once QSettings has written them.
            keepCopy();
            changed = changedFile(target, {}, value, key);
        }
        if (!changed || std::rename(
                            QFile::encodeName(changed->fileName()).constData(),
                            QFile::encodeName(target).constData()) != 0)
        {
            return false;
        }
        changed->setAutoRemove(false);
        return true;
    }

    /// A new file beside `target`, with its permissions: the settings `text`, and `value` under
    /// `key`. Null when it cannot be written.
    [[nodiscard]] static std::unique_ptr<QTemporaryFile>
    changedFile(const QString& target, const QByteArray& text, bool value, std::string_view key)
    {
        auto changed = std::make_unique<QTemporaryFile>(target + QStringLiteral(".XXXXXX"));
        if (!changed->open() || changed->write(text) < 0 || !changed->flush()) {
            return nullptr;
        }
        const QFileInfo present(target);
        if (present.exists()) {
            changed->setPermissions(present.permissions());
        }
        QSettings settings(changed->fileName(), QSettings::NativeFormat);
        settings.setValue(toQString(key), value);
        settings.sync();
        return settings.status() == QSettings::NoError ? std::move(changed) : nullptr;
    }

    [[nodiscard]] static QByteArray contentOf(const QString& name)
    {
        QFile stored(name);
        return stored.open(QIODevice::ReadOnly) ? stored.readAll() : QByteArray();
    }

    [[nodiscard]] QByteArray content() const { return contentOf(file); }

    /// The content of the file as it is now, or nothing when it is damaged.
    [[nodiscard]] QByteArray understoodContent() const
    {
        QByteArray text = content();
        return SettingsText(text).isDamaged() ? QByteArray() : text;
    }

    /// The first write replaces a file that could not be understood: what the user had in it is
    /// kept in a copy.
    void keepDamagedFile() const
    {
        if (SettingsText(content()).isDamaged()) {
            keepCopy();
        }
    }

    void keepCopy() const
    {
        const QString copy = file + QStringLiteral(".damaged");
        if (QFile::copy(file, copy)) {
            (void)std::fprintf(
                stderr,
                "Orlimo cannot understand its preferences; the old file is kept as %s\n",
                qUtf8Printable(copy));
        }
    }

    const QString file = settingsFileName();
};

} // namespace

UserDefaults& standardUserDefaults()
{
    static SettingsUserDefaults defaults;
    return defaults;
}

} // namespace orlimo
