#include "platform/preferences/linux/SettingsFile.h"

#include "platform/files/linux/FileContent.h"
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

#include <sys/stat.h>

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

const std::string group = "General";

/// The beginning of a line for QSettings, and where GLib would take it for something else.
struct Beginning
{
    QByteArray ofSettings;
    QByteArray ofKeyFile;
};
const std::array<Beginning, 3> beginnings{{
    {.ofSettings = ";", .ofKeyFile = "#\1;"},              // a comment
    {.ofSettings = "#\1", .ofKeyFile = "#\1\1"},           // one that looks like that
    {.ofSettings = "Encoding", .ofKeyFile = "%45ncoding"}, // the encoding of the file
}};

/// `text` with the `after` of each of these beginnings in place of its `before`; and with the name
/// of the group as it is written, for its case does not count.
QByteArray
converted(const std::string& text, QByteArray Beginning::*before, QByteArray Beginning::*after)
{
    QByteArrayList lines = QByteArray::fromStdString(text).split('\n');
    for (QByteArray& line : lines) {
        const QByteArray content = line.trimmed();
        for (const Beginning& beginning : beginnings) {
            if (content.startsWith(beginning.*before)) {
                line.replace(
                    line.indexOf(beginning.*before), (beginning.*before).size(), beginning.*after);
            }
        }
        if (content.compare("[general]", Qt::CaseInsensitive) == 0) {
            line = "[General]";
        }
    }
    return lines.join('\n');
}

/// The settings in `text`. Absent where there is something in it that is no setting.
std::optional<KeyFile> parsed(const std::string& text)
{
    const auto readable =
        converted(text, &Beginning::ofSettings, &Beginning::ofKeyFile).toStdString();
    auto settings = KeyFile::parse(readable);
    // To QSettings, what is before the first group belongs to this one.
    return settings ? std::move(settings) : KeyFile::parse("[" + group + "]\n" + readable);
}

SettingsFile::Contents contentsOf(const KeyFile& settings)
{
    SettingsFile::Contents contents;
    for (const std::string& key : settings.keys(group)) {
        contents.emplace(
            converted(key, &Beginning::ofKeyFile, &Beginning::ofSettings).toStdString(),
            settings.value(group, key).value_or(std::string()));
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
    if (parsedText != text) {
        const auto settings = parsed(*text);
        parsedContents = settings ? contentsOf(*settings) : Contents();
        parsedText = text;
    }
    return parsedContents;
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
    return replace(
        target, converted(settings->text(), &Beginning::ofKeyFile, &Beginning::ofSettings));
}

/// Nothing where there is no file. Preferences are read before a code reaches the clipboard: with
/// as few calls as possible.
std::optional<std::string> SettingsFile::read()
{
    auto [error, text] = readRegularFile(QFile::encodeName(file).toStdString());
    const bool isRead = error == 0 || error == ENOENT || error == ENOTDIR;
    if (std::exchange(isReadable, isRead) && !isReadable) {
        (void)std::fprintf(
            stderr, "Orlimo cannot read its preferences in %s\n", qUtf8Printable(file));
    }
    return isReadable ? std::optional(std::move(text)) : std::nullopt;
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
