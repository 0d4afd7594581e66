#include "platform/ToQString.h"
#include "platform/UserDefaults.h"
#include "platform/linux/BooleanValue.h"
#include "platform/linux/SettingsText.h"
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

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <optional>
#include <utility>

#include <fcntl.h>
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

/// The settings file of the application "Orlimo" of the organisation "Orlimo", in the folder where
/// the desktop's own rules put it.
QString settingsFileName()
{
    const QString name = QStringLiteral("Orlimo");
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, name, name).fileName();
}

/// Nothing where there is no file; absent where there is one, or may be, that cannot be read now.
/// Preferences are read on the way of a code to the clipboard: with as few calls as can be.
std::optional<QByteArray> contentOf(const QString& name)
{
    const UniqueFd file(::open(QFile::encodeName(name).constData(), O_RDONLY | O_CLOEXEC));
    if (!file) {
        return errno == ENOENT || errno == ENOTDIR ? std::optional(QByteArray()) : std::nullopt;
    }
    QByteArray text;
    std::array<char, 4096> part{};
    ssize_t length = 0;
    do {
        length = ::read(file.get(), part.data(), part.size());
        if (length > 0) {
            text.append(part.data(), length);
        }
    } while (length > 0 || (length < 0 && errno == EINTR));
    return length == 0 ? std::optional(std::move(text)) : std::nullopt;
}

bool isDamaged(const QByteArray& text)
{
    return SettingsText(text).isDamaged();
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
        const SettingsText* present = stored();
        return present != nullptr && asBool(present->contents().value(toQString(key)));
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
        if (const SettingsText* present = stored()) {
            const QVariantMap& contents = present->contents();
            for (auto entry = contents.begin(); entry != contents.end(); ++entry) {
                dictionary.emplace(
                    entry.key().toStdString(), entry.value().toString().toStdString());
            }
        }
        return dictionary;
    }

private:
    /// Puts a new file with the changed content in the place of the old one. Where the store is not
    /// `isKnown`, because it could not be read, a value that turns out to be there stays.
    [[nodiscard]] bool store(bool value, std::string_view key, bool isKnown) const
    {
        const QFileInfo present(file);
        const QString target = present.exists() ? present.canonicalFilePath() : file;
        (void)makeUserFolder(QFile::encodeName(QFileInfo(target).path()).toStdString());
        // The lock under which every other user of the format writes.
        QLockFile lock(target + QStringLiteral(".lock"));
        lock.setStaleLockTime(namelessLockAge);
        if (!lock.tryLock(longestWaitForLock)) {
            return false;
        }
        const SettingsText* old = stored();
        if (old == nullptr || (!isKnown && old->contents().contains(toQString(key)))) {
            return false; // what is in it would be lost
        }
        auto changed =
            changedFile(target, old->isDamaged() ? QByteArray() : old->text(), value, key);
        if (changed && isDamaged(contentOf(changed->fileName()).value_or(QByteArray()))) {
            // Odd files are understood at first, and no longer once QSettings has written them.
            changed = keepCopy() ? changedFile(target, {}, value, key) : nullptr;
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

    /// What is stored now, good until the next call. Null where it cannot be read, which is said
    /// once until it can be again.
    [[nodiscard]] const SettingsText* stored() const
    {
        const auto text = contentOf(file);
        const SettingsText* present = text ? understood(*text) : nullptr;
        if (std::exchange(isReadable, present != nullptr) && !isReadable) {
            (void)std::fprintf(
                stderr, "Orlimo cannot read its preferences in %s\n", qUtf8Printable(file));
        }
        return present;
    }

    /// What `text` stands for, good until the next call. The file is read at each use; what the
    /// same text means is worked out once. Null where there is no memory for that.
    [[nodiscard]] const SettingsText* understood(const QByteArray& text) const
    {
        if (!latest || latest->text() != text) {
            latest.emplace(text);
        }
        if (!latest->isAvailable()) {
            latest.reset();
        }
        return latest ? &*latest : nullptr;
    }

    /// The first write replaces a file that could not be understood: what the user had in it is
    /// kept in a copy. False where that cannot be made.
    [[nodiscard]] bool keepDamagedFile() const
    {
        const auto text = contentOf(file);
        const SettingsText* present = text ? understood(*text) : nullptr;
        return present == nullptr || !present->isDamaged() || keepCopy();
    }

    [[nodiscard]] bool keepCopy() const
    {
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
    mutable std::optional<SettingsText> latest;
    const QString file = settingsFileName();
};

} // namespace

UserDefaults& standardUserDefaults()
{
    static SettingsUserDefaults defaults;
    return defaults;
}

} // namespace orlimo
