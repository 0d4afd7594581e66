#include "platform/preferences/linux/SettingsText.h"

#include "platform/files/UniqueFd.h"

#include <QFile>
#include <QSettings>
#include <QString>

#include <array>
#include <ctime>
#include <utility>

#include <sys/mman.h>
#include <sys/stat.h>

namespace orlimo {

/// QSettings remembers what it read from a file by the file's name, size and time in whole
/// milliseconds, keeps a value that it could not write as if it were stored, and reports a damaged
/// file to one reader only. So it is not given the user's file, but its text in a file in memory,
/// which differs in time from every one before.
SettingsText::SettingsText(QByteArray text)
    : sourceText(std::move(text))
{
    const UniqueFd descriptor(::memfd_create("settings", MFD_CLOEXEC));
    const QString name = QStringLiteral("/proc/self/fd/%1").arg(descriptor.get());
    QFile file(name);
    available = descriptor && file.open(QIODevice::WriteOnly) && file.write(sourceText) >= 0 &&
                file.flush();
    file.close();
    if (!available) {
        return;
    }
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
    if (damaged) {
        values.clear();
    }
}

} // namespace orlimo
