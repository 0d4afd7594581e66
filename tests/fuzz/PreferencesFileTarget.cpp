#include "capture/Preferences.h"
#include "platform/preferences/UserDefaults.h"
#include "tests/capture/PreferenceSandbox.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/support/TemporaryFolder.h"

#include <QSettings>
#include <QString>

#include <filesystem>
#include <map>
#include <numeric>
#include <optional>
#include <string>

namespace orlimo {

namespace {

using Dictionary = std::map<std::string, std::string>;

std::filesystem::path damagedCopy()
{
    return PreferenceSandbox::file().string() + ".damaged";
}

/// A file that Qt has never read before, as Qt caches contents.
class FreshFile
{
public:
    explicit FreshFile(std::string_view bytes)
    {
        static const TemporaryFolder folder;
        static long number = 0;
        file = folder.path() / std::to_string(++number);
        writeFile(file, bytes);
    }
    FreshFile(const FreshFile&) = delete;
    FreshFile& operator=(const FreshFile&) = delete;
    ~FreshFile() { std::filesystem::remove(file); }

    [[nodiscard]] QString name() const { return QString::fromStdString(file.string()); }
    [[nodiscard]] std::string content() const { return contentOf(file); }

private:
    std::filesystem::path file;
};

/// What Qt itself reads from a file; absent if it reports damage.
std::optional<Dictionary> referenceDictionary(std::string_view bytes)
{
    const FreshFile file(bytes);
    const QSettings settings(file.name(), QSettings::NativeFormat);
    Dictionary dictionary;
    for (const QString& key : settings.allKeys()) {
        dictionary.emplace(key.toStdString(), settings.value(key).toString().toStdString());
    }
    return settings.status() == QSettings::FormatError ? std::nullopt : std::optional(dictionary);
}

/// What Qt itself writes when one value is stored in `bytes`.
std::string rewritten(std::string_view bytes, std::string_view key, bool value)
{
    const FreshFile file(bytes);
    QSettings settings(file.name(), QSettings::NativeFormat);
    settings.setValue(QLatin1String(key.data(), static_cast<int>(key.size())), value);
    settings.sync();
    return file.content();
}

/// The boolean that a string denotes, by a second and deliberately simple implementation.
bool referenceBoolean(const std::string& text)
{
    std::size_t place = text.find_first_not_of(" \t\n\v\f\r");
    if (place == std::string::npos) {
        return false;
    }
    if (text[place] == 'Y' || text[place] == 'y' || text[place] == 'T' || text[place] == 't') {
        return true;
    }
    if (text[place] == '+' || text[place] == '-') {
        ++place;
    }
    bool insideFraction = false;
    for (; place < text.size(); ++place) {
        if (text[place] >= '1' && text[place] <= '9') {
            return true;
        }
        if (text[place] == '.' && !insideFraction) {
            insideFraction = true;
        } else if (text[place] != '0') {
            return false;
        }
    }
    return false;
}

/// Values of other types begin with an at sign.
bool holdsStringsAlone(std::string_view bytes)
{
    return bytes.find('@') == std::string_view::npos;
}

Finding verifyReading(std::string_view bytes, const Dictionary& present, std::string_view key)
{
    const bool value = standardUserDefaults().boolForKey(key);
    const auto found = present.find(std::string(key));
    if (found == present.end() || holdsStringsAlone(bytes)) {
        const bool expected = found != present.end() && referenceBoolean(found->second);
        if (auto finding = mismatch("value of " + std::string(key), value, expected)) {
            return finding;
        }
    }
    return mismatch(
        "file that was only read", contentOf(PreferenceSandbox::file()), std::string(bytes));
}

/// The program's own preferences other than `written` must still be there.
Finding
verifyOwnPreferences(const Dictionary& before, const Dictionary& after, std::string_view written)
{
    for (const auto& [key, defaultValue] : preference::all) {
        const auto kept = before.find(std::string(key));
        if (key == written || kept == before.end()) {
            continue;
        }
        const auto found = after.find(kept->first);
        const auto now = found == after.end() ? "" : found->second;
        if (auto finding = mismatch("other preference", now, kept->second)) {
            return finding;
        }
    }
    return std::nullopt;
}

/// A file that Qt cannot parse, or could not parse once written, is replaced and a copy kept.
Finding verifyWriting(std::string_view bytes, const Dictionary& present, std::string_view key)
{
    UserDefaults& defaults = standardUserDefaults();
    const bool value = bytes.size() % 2 == 0;
    defaults.setBool(value, key);
    const Dictionary after = defaults.dictionaryRepresentation();

    const auto understood = referenceDictionary(bytes);
    const auto changed =
        understood ? referenceDictionary(rewritten(bytes, key, value)) : std::nullopt;
    const Dictionary alone{{std::string(key), value ? "true" : "false"}};
    if (auto finding = mismatch("preferences before", present, understood.value_or(Dictionary()))) {
        return finding;
    }
    if (auto finding = mismatch("preferences after", after, changed.value_or(alone))) {
        return finding;
    }
    if (auto finding = mismatch("value written", defaults.boolForKey(key), value)) {
        return finding;
    }
    const bool copied = std::filesystem::exists(damagedCopy());
    if (auto finding = mismatch("copy kept", copied, !changed)) {
        return finding;
    }
    return copied ? mismatch("copy", contentOf(damagedCopy()), std::string(bytes))
                  : verifyOwnPreferences(present, after, key);
}

/// Whether the file is written to as well, which takes far longer than reading: decided by the
/// bytes, so that the result is reproducible.
bool isToBeWritten(std::string_view bytes)
{
    const auto sum = [](unsigned total, char byte) { return total + static_cast<unsigned>(byte); };
    return std::accumulate(bytes.begin(), bytes.end(), 0U, sum) % 32 == 0;
}

} // namespace

/// The input is the settings file, byte for byte.
Finding checkInput(std::string_view input)
{
    static const PreferenceSandbox sandbox;
    writeFile(PreferenceSandbox::file(), input);
    std::filesystem::remove(damagedCopy());
    const Dictionary present = standardUserDefaults().dictionaryRepresentation();
    const std::string_view key = preference::all.at(input.size() % preference::all.size()).key;
    if (auto finding = verifyReading(input, present, key)) {
        return finding;
    }
    return isToBeWritten(input) ? verifyWriting(input, present, key) : std::nullopt;
}

} // namespace orlimo
