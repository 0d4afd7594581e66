#include "platform/preferences/UserDefaults.h"
#include "platform/preferences/linux/SettingsFile.h"
#include "platform/preferences/linux/SettingsValue.h"

#include <QDir>
#include <QStandardPaths>
#include <QString>

#include <cstdio>
#include <functional>
#include <map>
#include <string>

namespace orlimo {

namespace {

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
        const auto stored = contents();
        if (const auto entry = unstored.find(key); entry != unstored.end()) {
            return entry->second.value;
        }
        const auto found = stored.find(std::string(key));
        return found != stored.end() &&
               booleanValue(storedString(found->second).value_or(std::string()));
    }

    void setBool(bool value, std::string_view key) override
    {
        unstored.insert_or_assign(std::string(key), Unstored{.value = value, .isDefault = false});
        store();
    }

    void setDefault(bool value, std::string_view key) override
    {
        unstored.try_emplace(std::string(key), Unstored{.value = value, .isDefault = true});
        store();
    }

    [[nodiscard]] std::map<std::string, std::string> dictionaryRepresentation() const override
    {
        auto dictionary = contents();
        for (auto& [key, value] : dictionary) {
            value = storedString(value).value_or(value);
        }
        for (const auto& [key, entry] : unstored) {
            dictionary.insert_or_assign(key, entry.value ? "true" : "false");
        }
        return dictionary;
    }

private:
    struct Unstored
    {
        bool value;
        bool isDefault; ///< which yields to a value that turns out to be stored
    };

    void store()
    {
        const bool isStored = file.change([this](const SettingsFile::Contents& stored) {
            dropDefaultsIn(stored);
            SettingsFile::Values values;
            for (const auto& [key, entry] : unstored) {
                values.emplace(key, entry.value);
            }
            return values;
        });
        if (isStored) {
            unstored.clear();
        } else {
            (void)std::fprintf(
                stderr, "Orlimo cannot store preferences in %s\n", qUtf8Printable(file.path()));
        }
    }

    /// What is stored now. Empty where it cannot be read.
    [[nodiscard]] SettingsFile::Contents contents() const
    {
        const auto stored = file.contents();
        if (stored) {
            dropDefaultsIn(*stored);
        }
        return stored.value_or(SettingsFile::Contents());
    }

    void dropDefaultsIn(const SettingsFile::Contents& stored) const
    {
        std::erase_if(unstored, [&stored](const auto& entry) {
            return entry.second.isDefault && stored.contains(entry.first);
        });
    }

    /// Reading the file finds out which defaults it makes superfluous.
    mutable std::map<std::string, Unstored, std::less<>> unstored;
    mutable SettingsFile file{settingsFilePath()};
};

} // namespace

UserDefaults& standardUserDefaults()
{
    static SettingsUserDefaults defaults;
    return defaults;
}

} // namespace orlimo
