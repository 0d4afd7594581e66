#include "platform/loginitem/linux/AutostartEntry.h"

#include "platform/ApplicationIdentity.h"
#include "platform/files/linux/FileContent.h"
#include "platform/files/linux/UserFolders.h"
#include "platform/loginitem/LaunchEvent.h"
#include "platform/preferences/linux/KeyFile.h"

#include <QFile>
#include <QSaveFile>
#include <QString>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {

namespace {

const std::string group = "Desktop Entry";

/// The keys with which desktops mark an entry, and their values when it is switched off.
struct Switch
{
    std::string key;
    std::string off;
    std::string offAsNumber; ///< the form in old files
};
const std::array<Switch, 2> userSwitches{{
    {.key = "Hidden", .off = "true", .offAsNumber = "1"},
    {.key = "X-GNOME-Autostart-enabled", .off = "false", .offAsNumber = "0"},
}};

/// errno of looking for a program there; 0 when it exists.
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

bool isDisabledByUser(const KeyFile& entry)
{
    return std::any_of(userSwitches.begin(), userSwitches.end(), [&](const auto& userSwitch) {
        const auto value = entry.value(group, userSwitch.key);
        return value == userSwitch.off || value == userSwitch.offAsNumber;
    });
}

/// One argument of a command line that stands for exactly `text`: quoted for the key Exec.
std::string execArgument(std::string_view text)
{
    constexpr std::string_view special = R"("`$\)";
    std::string quoted = "\"";
    for (const char character : text) {
        if (special.find(character) != std::string_view::npos) {
            quoted += '\\';
        } else if (character == '%') {
            quoted += '%';
        }
        quoted += character;
    }
    return quoted + '"';
}

/// The entry for `program` with the marks that the user has made in `old`.
KeyFile entryFor(const std::filesystem::path& program, const KeyFile& old)
{
    KeyFile entry;
    entry.setValue(group, "Type", "Application");
    entry.setString(group, "Name", std::string(identity::applicationName));
    entry.setString(
        group, "Comment", "Puts the verification code of an incoming message on the clipboard");
    entry.setString(group, "Icon", std::string(identity::applicationIdentifier));
    entry.setString(
        group, "Exec", execArgument(program.native()) + " " + std::string(launchedAtLoginArgument));
    entry.setString(group, "TryExec", program.native());
    entry.setValue(group, "Terminal", "false");
    for (const auto& userSwitch : userSwitches) {
        if (const auto value = old.value(group, userSwitch.key)) {
            entry.setValue(group, userSwitch.key, *value);
        }
    }
    return entry;
}

} // namespace

AutostartEntry::AutostartEntry(
    const std::filesystem::path& folder, std::filesystem::path programFile)
    : file(folder / std::string(identity::applicationIdentifier).append(".desktop"))
    , program(std::move(programFile))
{}

LoginItemStatus AutostartEntry::status() const
{
    if (errorOfProgram(program) != 0) {
        return LoginItemStatus::notFound;
    }
    const auto [error, content] = readRegularFile(file);
    const auto entry = error == 0 ? KeyFile::parse(content) : std::nullopt;
    if (!entry) {
        return LoginItemStatus::notRegistered;
    }
    return isDisabledByUser(*entry) ? LoginItemStatus::requiresApproval : LoginItemStatus::enabled;
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
    const auto [error, content] = readRegularFile(file);
    if (error != 0 && error != ENOENT) {
        return failure(file, error);
    }
    const std::string text = entryFor(program, KeyFile::parse(content).value_or(KeyFile())).text();
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
