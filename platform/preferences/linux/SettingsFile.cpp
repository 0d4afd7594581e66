#include "platform/preferences/linux/SettingsFile.h"

#include "platform/files/UniqueFd.h"
#include "platform/files/linux/UserFolders.h"
#include "platform/process/ToQString.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <QTemporaryFile>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {

namespace {

using std::chrono::milliseconds;

/// How long a write waits for another process that writes the file. The main thread waits, so it is
/// what still feels immediate; a write itself takes a few milliseconds.
constexpr milliseconds lockTimeout{100};

/// How often the lock is tried meanwhile.
constexpr milliseconds lockInterval{5};

/// How old a lock has to be to be taken away when its file does not name a holder who is alive: one
/// that was killed before it had written its name leaves an empty file. Shorter than the timeout,
/// so that a single write gets over it. From a holder who is alive none is taken, for the system's
/// own lock on the file keeps it.
constexpr milliseconds staleLockTime{50};

/// Nothing where there is no file; absent where there is one, or may be, that cannot be read now.
/// What is no regular file might never end, or never begin, and cannot be replaced by one.
/// Preferences are read on the way of a code to the clipboard: with as few calls as can be.
std::optional<QByteArray> contentOf(const QString& name)
{
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const UniqueFd file(::open(QFile::encodeName(name).constData(), flags));
    if (!file) {
        return errno == ENOENT || errno == ENOTDIR ? std::optional(QByteArray()) : std::nullopt;
    }
    struct stat status
    {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    QByteArray text;
    std::array<char, 4096> buffer{};
    ssize_t length = 0;
    do {
        length = ::read(file.get(), buffer.data(), buffer.size());
        if (length > 0) {
            text.append(buffer.data(), length);
        }
    } while (length > 0 || (length < 0 && errno == EINTR));
    return length == 0 ? std::optional(std::move(text)) : std::nullopt;
}

bool isDamaged(const QByteArray& text)
{
    return SettingsText(text).isDamaged();
}

/// Whether a lock file is under this name, or none. QLockFile reads what is there to learn who
/// holds the lock, which would not return from a pipe.
bool isUsableAsLock(const QString& name)
{
    struct stat status
    {};
    return ::lstat(QFile::encodeName(name).constData(), &status) != 0 || S_ISREG(status.st_mode);
}

/// A new file beside `target`, with its permissions: the settings `text`, changed by `values`. Null
/// when it cannot be written.
std::unique_ptr<QTemporaryFile>
changedFile(const QString& target, const QByteArray& text, const SettingsFile::Values& values)
{
    auto changed = std::make_unique<QTemporaryFile>(target + QStringLiteral(".XXXXXX"));
    if (!changed->open() || changed->write(text) < 0 || !changed->flush()) {
        return nullptr;
    }
    const QFileInfo current(target);
    if (current.exists()) {
        changed->setPermissions(current.permissions());
    }
    QSettings settings(changed->fileName(), QSettings::NativeFormat);
    for (const auto& [key, value] : values) {
        settings.setValue(toQString(key), value);
    }
    settings.sync();
    return settings.status() == QSettings::NoError ? std::move(changed) : nullptr;
}

} // namespace

SettingsFile::SettingsFile(QString filePath)
    : file(std::move(filePath))
{}

const QVariantMap* SettingsFile::contents()
{
    const SettingsText* current = read();
    return current == nullptr ? nullptr : &current->contents();
}

bool SettingsFile::change(const std::function<Values(const QVariantMap& stored)>& valuesFor)
{
    if (read() == nullptr) {
        return false; // nor is a lock left beside a device or the like
    }
    const QFileInfo current(file);
    const QString target = current.exists() ? current.canonicalFilePath() : file;
    (void)makeUserFolder(QFile::encodeName(QFileInfo(target).path()).toStdString());
    // The lock under which every other user of the format writes.
    const QString lockPath = target + QStringLiteral(".lock");
    QLockFile lock(lockPath);
    if (!acquire(lock, lockPath)) {
        return false;
    }
    const SettingsText* old = read();
    if (old == nullptr) {
        return false; // what is in it would be lost
    }
    const Values values = valuesFor(old->contents());
    if (values.empty()) {
        return true;
    }
    if (old->isDamaged() && !backUpDamagedFile()) {
        return false;
    }
    auto changed = changedFile(target, old->isDamaged() ? QByteArray() : old->text(), values);
    if (changed && isDamaged(contentOf(changed->fileName()).value_or(QByteArray()))) {
        // Odd files are understood at first, and no longer once QSettings has written them.
        changed = backUpDamagedFile() ? changedFile(target, {}, values) : nullptr;
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

const SettingsText* SettingsFile::read()
{
    const auto text = contentOf(file);
    const SettingsText* current = text ? parse(*text) : nullptr;
    if (std::exchange(isReadable, current != nullptr) && !isReadable) {
        (void)std::fprintf(
            stderr, "Orlimo cannot read its preferences in %s\n", qUtf8Printable(file));
    }
    return current;
}

/// What `text` stands for, good until the next call. The file is read at each use; what the same
/// text means is worked out once. Null where there is no memory for that.
const SettingsText* SettingsFile::parse(const QByteArray& text)
{
    if (!latest || latest->text() != text) {
        latest.emplace(text);
    }
    if (!latest->isAvailable()) {
        latest.reset();
    }
    return latest ? &*latest : nullptr;
}

/// Waits only where the lock was available last time, so that a holder who does not let go delays
/// one write, and not each write of a start.
bool SettingsFile::acquire(QLockFile& lock, const QString& lockPath)
{
    lock.setStaleLockTime(static_cast<int>(staleLockTime.count()));
    const auto deadline =
        std::chrono::steady_clock::now() + (wasLockAvailable ? lockTimeout : milliseconds(0));
    wasLockAvailable = false;
    while (isUsableAsLock(lockPath)) {
        if (lock.tryLock(0)) {
            wasLockAvailable = true;
            break;
        }
        if (lock.error() != QLockFile::LockFailedError ||
            std::chrono::steady_clock::now() >= deadline) {
            break;
        }
        std::this_thread::sleep_for(lockInterval);
    }
    return wasLockAvailable;
}

/// Keeps what the user had in a file that is about to be replaced. An earlier copy stays, and will
/// do. False where there is none in the end.
bool SettingsFile::backUpDamagedFile() const
{
    const QString copy = file + QStringLiteral(".damaged");
    if (QFile::copy(file, copy)) {
        (void)std::fprintf(
            stderr,
            "Orlimo cannot understand its preferences; the old file is kept as %s\n",
            qUtf8Printable(copy));
        return true;
    }
    return QFileInfo(copy).isFile();
}

} // namespace orlimo
