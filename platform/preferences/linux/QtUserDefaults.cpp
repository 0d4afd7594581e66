#include "platform/preferences/UserDefaults.h"
#include "platform/preferences/linux/BooleanValue.h"
#include "platform/preferences/linux/SettingsFile.h"
#include "platform/preferences/linux/UnstoredPreferences.h"
#include "platform/process/ToQString.h"

#include <QDir>
#include <QMetaType>
#include <QStandardPaths>
#include <QString>
#include <QVariant>

#include <cstdio>

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
/// the desktop's own rules put it. QSettings would say the same, but reads the file for that.
QString settingsFilePath()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir::cleanPath(QDir().absoluteFilePath(folder + QStringLiteral("/Orlimo/Orlimo.conf")));
}

/// Preferences in the settings file of the user's configuration folder, and beside it those that
/// could not be stored there. These are tried again with each write, and not by themselves: a store
/// that cannot be written does not announce when it can be, and a timer would wake an idle program.
class SettingsUserDefaults final : public UserDefaults
{
public:
    [[nodiscard]] bool boolForKey(std::string_view key) const override
    {
        const QVariantMap* stored = contents();
        if (const auto value = unstored.value(key)) {
            return *value;
        }
        return stored != nullptr && asBool(stored->value(toQString(key)));
    }

    void setBool(bool value, std::string_view key) override
    {
        unstored.set(value, key);
        store();
    }

    void setDefault(bool value, std::string_view key) override
    {
        unstored.setDefault(value, key);
        store();
    }

    [[nodiscard]] std::map<std::string, std::string> dictionaryRepresentation() const override
    {
        std::map<std::string, std::string> dictionary;
        if (const QVariantMap* stored = contents()) {
            for (auto entry = stored->begin(); entry != stored->end(); ++entry) {
                dictionary.emplace(
                    entry.key().toStdString(), entry.value().toString().toStdString());
            }
        }
        for (const auto& [key, value] : unstored.values()) {
            dictionary.insert_or_assign(key, value ? "true" : "false");
        }
        return dictionary;
    }

private:
    void store()
    {
        const bool isStored = file.change([this](const QVariantMap& stored) {
            dropDefaultsIn(stored);
            return unstored.values();
        });
        if (isStored) {
            unstored.clear();
        } else {
            (void)std::fprintf(
                stderr, "Orlimo cannot store preferences in %s\n", qUtf8Printable(file.path()));
        }
    }

    /// What is stored now, good until the next call. Null where it cannot be read.
    [[nodiscard]] const QVariantMap* contents() const
    {
        const QVariantMap* stored = file.contents();
        if (stored != nullptr) {
            dropDefaultsIn(*stored);
        }
        return stored;
    }

    void dropDefaultsIn(const QVariantMap& stored) const
    {
        unstored.dropDefaults(
            [&stored](const std::string& key) { return stored.contains(toQString(key)); });
    }

    /// Reading the file finds out which defaults it makes superfluous.
    mutable UnstoredPreferences unstored;
    mutable SettingsFile file{settingsFilePath()};
};

} // namespace

UserDefaults& standardUserDefaults()
{
    static SettingsUserDefaults defaults;
    return defaults;
}

} // namespace orlimo
