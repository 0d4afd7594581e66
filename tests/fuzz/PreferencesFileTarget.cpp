#include "capture/Preferences.h"
#include "platform/preferences/UserDefaults.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/support/TemporaryFolder.h"

#include <QByteArray>
#include <QSettings>
#include <QString>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <numeric>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace orlimo {

namespace {

using Dictionary = std::map<std::string, std::string>;

/// In the sandbox's home, which is set when the program starts.
const std::filesystem::path& settingsFile()
{
    static const std::filesystem::path file =
        std::getenv("XDG_CONFIG_HOME") + // NOLINT(concurrency-mt-unsafe)
        std::string("/Orlimo/Orlimo.conf");
    return file;
}

std::filesystem::path damagedCopy()
{
    return settingsFile().string() + ".damaged";
}

/// Whether every line is a plain setting, group, comment or blank line, as programs write them.
bool isTidy(std::string_view bytes)
{
    static const std::regex line(R"(\[[A-Za-z]+\]|[A-Za-z]+=[A-Za-z0-9. +-]*|;[^\r]*|)");
    std::istringstream lines{std::string(bytes)};
    for (std::string text; std::getline(lines, text);) {
        if (!std::regex_match(text, line)) {
            return false;
        }
    }
    return bytes.find('\0') == std::string_view::npos;
}

/// The values outside other groups that QSettings reads from a tidy file.
Dictionary referenceDictionary(std::string_view bytes)
{
    // QSettings caches files by their names.
    static const TemporaryFolder folder;
    static long number = 0;
    const auto file = folder.path() / std::to_string(++number);
    writeFile(file, bytes);
    const QSettings settings(QString::fromStdString(file.string()), QSettings::NativeFormat);
    Dictionary dictionary;
    for (const QString& key : settings.childKeys()) {
        dictionary.emplace(key.toStdString(), settings.value(key).toString().toStdString());
    }
    std::filesystem::remove(file);
    return dictionary;
}

/// The boolean that a string stands for: a second implementation, kept plain on purpose.
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

/// What is not a string has an at sign before it, or commas between its parts.
bool holdsStringsAlone(std::string_view bytes)
{
    return bytes.find_first_of("@,") == std::string_view::npos;
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
    if (isTidy(bytes)) {
        if (auto finding = mismatch("preferences", present, referenceDictionary(bytes))) {
            return finding;
        }
    }
    return mismatch("file that was only read", contentOf(settingsFile()), std::string(bytes));
}

/// The comments in `bytes`, without the white space around them.
std::multiset<std::string> commentsIn(std::string_view bytes)
{
    std::multiset<std::string> comments;
    std::istringstream lines{std::string(bytes)};
    for (std::string line; std::getline(lines, line);) {
        const auto text = QByteArray::fromStdString(line).trimmed();
        if (text.startsWith(';') || text.startsWith('#')) {
            comments.insert(text.toStdString());
        }
    }
    return comments;
}

/// What cannot be parsed is replaced, and a copy kept; of anything else the rest stays.
Finding verifyWriting(std::string_view bytes, const Dictionary& present, std::string_view key)
{
    UserDefaults& defaults = standardUserDefaults();
    const bool value = bytes.size() % 2 == 0;
    defaults.setBool(value, key);
    const Dictionary after = defaults.dictionaryRepresentation();
    Dictionary expected = present;
    expected[std::string(key)] = value ? "true" : "false";
    if (auto finding = firstOf({
            mismatch("preferences after", after, expected),
            mismatch("value written", defaults.boolForKey(key), value),
        }))
    {
        return finding;
    }
    if (std::filesystem::exists(damagedCopy())) {
        return firstOf({
            mismatch("tidy file replaced", isTidy(bytes), false),
            mismatch("copy", contentOf(damagedCopy()), std::string(bytes)),
        });
    }
    const std::string written = contentOf(settingsFile());
    return firstOf({
        mismatch("comments", commentsIn(written), commentsIn(bytes)),
        isTidy(bytes) ? mismatch("preferences to QSettings", referenceDictionary(written), after)
                      : std::nullopt,
    });
}

/// Whether the file is written to as well, which takes far longer than to read it: decided by the
/// bytes, so that the judgement is the same each time.
bool isToBeWritten(std::string_view bytes)
{
    const auto sum = [](unsigned total, char byte) { return total + static_cast<unsigned>(byte); };
    return std::accumulate(bytes.begin(), bytes.end(), 0U, sum) % 32 == 0;
}

} // namespace

/// The input is the settings file, byte for byte.
Finding checkInput(std::string_view input)
{
    writeFile(settingsFile(), input);
    std::filesystem::remove(damagedCopy());
    const Dictionary present = standardUserDefaults().dictionaryRepresentation();
    const std::string_view key = preference::all.at(input.size() % preference::all.size()).key;
    if (auto finding = verifyReading(input, present, key)) {
        return finding;
    }
    return isToBeWritten(input) ? verifyWriting(input, present, key) : std::nullopt;
}

} // namespace orlimo
