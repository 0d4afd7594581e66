#include "platform/loginitem/linux/AutostartEntry.h"

#include "platform/ApplicationIdentity.h"
#include "platform/files/UniqueFd.h"
#include "platform/files/linux/UserFolders.h"
#include "platform/loginitem/LaunchEvent.h"
#include "platform/loginitem/linux/DesktopEntry.h"

#include <QFile>
#include <QSaveFile>
#include <QString>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {

namespace {

/// The keys with which desktops mark an entry, and what their value is when it is switched off.
struct Switch
{
    std::string_view key;
    std::string_view off;
    std::string_view offAsNumber; ///< how old files write it
};
constexpr std::array<Switch, 2> userSwitches{{
    {.key = "Hidden", .off = "true", .offAsNumber = "1"},
    {.key = "X-GNOME-Autostart-enabled", .off = "false", .offAsNumber = "0"},
}};

/// A file's content, or the number of the system's error that stands in its way.
struct ReadResult
{
    int error = 0;
    std::string content{};
};

ReadResult read(const std::filesystem::path& file)
{
    // A pipe would block until somebody writes.
    const UniqueFd descriptor(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat found
    {};
    if (!descriptor || ::fstat(descriptor.get(), &found) != 0) {
        return {.error = errno};
    }
    if (!S_ISREG(found.st_mode)) {
        return {.error = S_ISDIR(found.st_mode) ? EISDIR : EEXIST};
    }
    ReadResult result;
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t count = ::read(descriptor.get(), buffer.data(), buffer.size());
        if (count < 0) {
            return {.error = errno};
        }
        if (count == 0) {
            return result;
        }
        result.content.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

/// The number of the error that one gets who looks for a program there; 0 when it is there.
int errorOfProgram(const std::filesystem::path& program)
{
    struct stat found
    {};
    if (::stat(program.c_str(), &found) != 0) {
        return errno;
    }
    return S_ISREG(found.st_mode) ? 0 : ENOENT;
}

bool isUtf8(const std::filesystem::path& path)
{
    return QString::fromStdString(path).toStdString() == path.native();
}

ServiceError failure(const std::filesystem::path& path, int error, const QString& reason)
{
    const QString name = QString::fromStdString(path.empty() ? "/proc/self/exe" : path.native());
    return {
        .code = error,
        .localizedDescription = (name + QStringLiteral(": ") + reason).toStdString(),
    };
}

ServiceError failure(const std::filesystem::path& path, int error)
{
    return failure(path, error, qt_error_string(error));
}

/// The lines in which the user has marked the entry.
std::string userChoice(std::string_view content)
{
    std::string lines;
    for (const auto& userSwitch : userSwitches) {
        if (const auto value = desktopEntry::lastValue(content, userSwitch.key)) {
            lines.append(userSwitch.key).append("=").append(*value).append("\n");
        }
    }
    return lines;
}

bool isDisabledByUser(std::string_view content)
{
    return std::any_of(userSwitches.begin(), userSwitches.end(), [&](const auto& userSwitch) {
        const auto value = desktopEntry::lastValue(content, userSwitch.key);
        return value == userSwitch.off || value == userSwitch.offAsNumber;
    });
}

std::string entryText(const std::filesystem::path& program)
{
    std::string text = "[Desktop Entry]\nType=Application\n";
    text.append("Name=").append(identity::applicationName).append("\n");
    text += "Comment=Puts the verification code of an incoming message on the clipboard\n";
    text.append("Icon=").append(identity::applicationIdentifier).append("\n");
    text.append("Exec=").append(desktopEntry::execArgument(program.native()));
    text.append(" ").append(launchedAtLoginArgument).append("\n");
    text.append("TryExec=").append(desktopEntry::stringValue(program.native())).append("\n");
    text += "Terminal=false\n";
    return text;
}

} // namespace

AutostartEntry::AutostartEntry(
    const std::filesystem::path& folder, std::filesystem::path programFile)
    : file(folder / (std::string(identity::applicationIdentifier) + ".desktop"))
    , program(std::move(programFile))
{}

LoginItemStatus AutostartEntry::status() const
{
    if (errorOfProgram(program) != 0) {
        return LoginItemStatus::notFound;
    }
    const auto [error, content] = read(file);
    if (error != 0) {
        return LoginItemStatus::notRegistered;
    }
    return isDisabledByUser(content) ? LoginItemStatus::requiresApproval : LoginItemStatus::enabled;
}

std::optional<ServiceError> AutostartEntry::add() const
{
    if (const int error = errorOfProgram(program)) {
        return failure(program, error);
    }
    for (const auto& path : {program, file}) {
        if (!isUtf8(path)) {
            return failure(path, EILSEQ);
        }
    }
    if (const int error = makeUserFolder(file.parent_path())) {
        return failure(file.parent_path(), error);
    }
    const auto [error, content] = read(file);
    if (error != 0 && error != ENOENT) {
        return failure(file, error);
    }
    const std::string text = entryText(program) + userChoice(content);
    QSaveFile saveFile(QString::fromStdString(file));
    if (saveFile.open(QIODevice::WriteOnly) &&
        saveFile.write(text.data(), static_cast<qint64>(text.size())) >= 0 && saveFile.flush() &&
        saveFile.commit())
    {
        return std::nullopt;
    }
    return failure(file, EIO, saveFile.errorString());
}

std::optional<ServiceError> AutostartEntry::remove() const
{
    if (::unlink(file.c_str()) == 0) {
        return std::nullopt;
    }
    return failure(file, errno);
}

} // namespace orlimo
