#include "platform/preferences/linux/SettingsFile.h"

#include "platform/files/UniqueFd.h"
#include "platform/files/linux/UserFolders.h"
#include "platform/preferences/linux/KeyFile.h"

#include <QByteArrayList>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryFile>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
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

const std::string group = "General";

/// `text` with `after` in place of `before` at the beginning of each line, as comments begin with a
/// semicolon for QSettings and with a number sign for GLib; and with the name of the group as it is
/// written, for its case does not count.
QByteArray converted(const QByteArray& text, const QByteArray& before, const QByteArray& after)
{
    QByteArrayList lines = text.split('\n');
    for (QByteArray& line : lines) {
        const QByteArray content = line.trimmed();
        if (content.startsWith(before)) {
            line.replace(line.indexOf(before), before.size(), after);
        } else if (content.compare("[general]", Qt::CaseInsensitive) == 0) {
            line = "[General]";
        }
    }
    return lines.join('\n');
}

/// The settings in `text`. Absent where there is something in it that is no setting.
std::optional<KeyFile> parsed(const QByteArray& text)
{
    const auto readable = converted(text, ";", "#;").toStdString();
    auto settings = KeyFile::parse(readable);
    // To QSettings, what is before the first group belongs to this one.
    return settings ? std::move(settings) : KeyFile::parse("[" + group + "]\n" + readable);
}

SettingsFile::Contents contentsOf(const KeyFile& settings)
{
    SettingsFile::Contents contents;
    for (const std::string& key : settings.keys(group)) {
        contents.emplace(key, settings.value(group, key).value_or(std::string()));
    }
    return contents;
}

/// Whether a lock file is under this name, or none. QLockFile reads what is there to learn who
/// holds the lock, which would not return from a pipe.
bool isUsableAsLock(const QString& name)
{
    struct stat status
    {};
    return ::lstat(QFile::encodeName(name).constData(), &status) != 0 || S_ISREG(status.st_mode);
}

/// Puts `text` in the place of `target` as a whole, with the permissions that it has; a new file is
/// the user's alone. False where that cannot be done: `target` is as it was.
bool replace(const QString& target, const QByteArray& text)
{
    QTemporaryFile successor(target + QStringLiteral(".XXXXXX"));
    if (!successor.open() || successor.fileName().isEmpty() ||
        successor.write(text) != text.size() || !successor.flush())
    {
        return false;
    }
    const QFileInfo current(target);
    if (current.exists()) {
        successor.setPermissions(current.permissions());
    }
    // A file system that cannot do this is no reason to do without the settings.
    (void)::fsync(successor.handle());
    if (std::rename(
            QFile::encodeName(successor.fileName()).constData(),
            QFile::encodeName(target).constData()) != 0)
    {
        return false;
    }
    successor.setAutoRemove(false);
    return true;
}

} // namespace

SettingsFile::SettingsFile(QString filePath)
    : file(std::move(filePath))
{}

std::optional<SettingsFile::Contents> SettingsFile::contents()
{
    const auto text = read();
    if (!text) {
        return std::nullopt;
    }
    const auto settings = parsed(*text);
    return settings ? contentsOf(*settings) : Contents();
}

bool SettingsFile::change(const std::function<Values(const Contents& stored)>& valuesFor)
{
    if (!read()) {
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
    const auto text = read();
    if (!text) {
        return false; // its settings would be lost
    }
    auto settings = parsed(*text);
    const Values values = valuesFor(settings ? contentsOf(*settings) : Contents());
    if (values.empty()) {
        return true;
    }
    if (!settings) {
        if (!backUpDamagedFile()) {
            return false;
        }
        settings.emplace();
    }
    for (const auto& [key, value] : values) {
        settings->setSortedValue(group, key, value ? "true" : "false");
    }
    const auto changed = QByteArray::fromStdString(settings->text());
    return replace(target, converted(changed, "#;", ";"));
}

std::optional<QByteArray> SettingsFile::read()
{
    auto text = contentOf(file);
    if (std::exchange(isReadable, text.has_value()) && !isReadable) {
        (void)std::fprintf(
            stderr, "Orlimo cannot read its preferences in %s\n", qUtf8Printable(file));
    }
    return text;
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
