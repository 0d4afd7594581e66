#include "platform/ToQString.h"
#include "platform/UserDefaults.h"
#include "platform/linux/BooleanValue.h"
#include "platform/linux/UserFolder.h"
#include "platform/posix/UniqueFd.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QMetaType>
#include <QSettings>
#include <QString>
#include <QTemporaryFile>
#include <QVariant>
#include <QVariantMap>

#include <array>
#include <cstdio>
#include <ctime>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

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
class SettingsText
{
public:
    /// Has the toolkit understand `text`.
    ///
    /// QSettings remembers what it read from a file by the file's name, size and time in whole
    /// milliseconds, keeps a value that it could not write as if it were stored, and reports a
    /// damaged file to one reader only. So it never sees the user's file: it is given the text in a
    /// file in memory, which differs in time from every one before.
    explicit SettingsText(QByteArray understood)
        : text(std::move(understood))
    {
        const UniqueFd descriptor(::memfd_create("settings", MFD_CLOEXEC));
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
        const QSettings settings(name, QSettings::NativeFormat);
        // Lines are understood only when they are asked for; damage is not reported before.
        for (const QString& key : settings.allKeys()) {
            values.insert(key, settings.value(key));
        }
        damaged = settings.status() == QSettings::FormatError;
    }

    [[nodiscard]] bool isOf(const QByteArray& other) const { return text == other; }
    [[nodiscard]] bool isDamaged() const { return damaged; }

    /// What is under each key, also in a damaged text.
    [[nodiscard]] const QVariantMap& contents() const { return values; }

private:
    QByteArray text;
    QVariantMap values;
    bool damaged = false;
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
        const SettingsText& settings = understood(content());
        return !settings.isDamaged() && asBool(settings.contents().value(toQString(key)));
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
        const SettingsText& settings = understood(understoodContent());
        const QVariantMap& contents = settings.contents();
        for (auto entry = contents.begin(); entry != contents.end(); ++entry) {
            dictionary.emplace(entry.key().toStdString(), entry.value().toString().toStdString());
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
        (void)makeUserFolder(QFile::encodeName(QFileInfo(target).path()).toStdString());
        // The lock under which every other user of the format writes.
        QLockFile lock(target + QStringLiteral(".lock"));
        if (!lock.tryLock(longestWaitForLock)) {
            return false;
        }
        QTemporaryFile changed(target + QStringLiteral(".XXXXXX"));
        if (!changed.open() || changed.write(understoodContent()) < 0 || !changed.flush()) {
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

    /// What `text` stands for. The file is read at each use; what the same text means is worked out
    /// once. Good until the next call.
    [[nodiscard]] const SettingsText& understood(const QByteArray& text) const
    {
        if (!latest || !latest->isOf(text)) {
            latest.emplace(text);
        }
        return *latest;
    }

    [[nodiscard]] QByteArray content() const
    {
        // At each use, on the way of a code to the clipboard: with as few calls as can be.
        const UniqueFd stored(::open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC));
        QByteArray text;
        std::array<char, 4096> part{};
        ssize_t length = 0;
        while (stored.get() >= 0 && (length = ::read(stored.get(), part.data(), part.size())) > 0) {
            text.append(part.data(), length);
        }
        return text;
    }

    /// The content of the file as it is now, or nothing when it is damaged.
    [[nodiscard]] QByteArray understoodContent() const
    {
        QByteArray text = content();
        return understood(text).isDamaged() ? QByteArray() : text;
    }

    /// The first write replaces a file that could not be understood: what the user had in it is
    /// kept in a copy.
    void keepDamagedFile() const
    {
        const QString copy = file + QStringLiteral(".damaged");
        if (understood(content()).isDamaged() && QFile::copy(file, copy)) {
            (void)std::fprintf(
                stderr,
                "Orlimo cannot understand its preferences; the old file is kept as %s\n",
                qUtf8Printable(copy));
        }
    }

    const QString file = settingsFileName();
    mutable std::optional<SettingsText> latest;
};

} // namespace

UserDefaults& standardUserDefaults()
{
    static SettingsUserDefaults defaults;
    return defaults;
}

} // namespace orlimo
