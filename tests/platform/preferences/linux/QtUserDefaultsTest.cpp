#include "platform/preferences/UserDefaults.h"
#include "platform/preferences/linux/SettingsValue.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <QLockFile>
#include <QRect>
#include <QSettings>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace orlimo {
namespace {

using namespace std::string_view_literals;
using std::filesystem::perms;

constexpr std::string_view key = "capturingEnabled";

std::filesystem::path variable(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): never set here
    return value == nullptr ? "" : value;
}

std::string storeWith(std::string_view value)
{
    return "[General]\n" + std::string(key) + "=" + std::string(value) + "\n";
}

bool read(std::string_view which = key)
{
    return standardUserDefaults().boolForKey(which);
}

void write(bool value, std::string_view which = key)
{
    standardUserDefaults().setBool(value, which);
}

void writeDefault(std::string_view which = key)
{
    standardUserDefaults().setDefault(true, which);
}

std::map<std::string, std::string> everything()
{
    return standardUserDefaults().dictionaryRepresentation();
}

/// All preferences, with an exclamation mark after each one whose boolean differs from its listed
/// value.
std::string listing()
{
    std::string line;
    for (const auto& [name, value] : everything()) {
        line += (line.empty() ? "" : " ") + name + "=" + value;
        line += read(name) == (value == "true") ? "" : "!";
    }
    return line;
}

/// What `work` prints on standard error.
std::string errorsOf(const std::function<void()>& work)
{
    testing::internal::CaptureStderr();
    work();
    return testing::internal::GetCapturedStderr();
}

void makePipe(const std::filesystem::path& path)
{
    EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
    std::filesystem::permissions(path, perms(0666));
}

class QtUserDefaultsTest : public testing::Test
{
protected:
    void SetUp() override { clear(); }
    void TearDown() override { forgetUnstored(); }

    void forgetUnstored() const
    {
        clear();
        write(true); // and with it what could not be stored before
        clear();
    }

    void clear() const
    {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }

    /// What `work` prints on standard error when it runs without the superuser's rights.
    [[nodiscard]] std::string errorsOfUnprivileged(const std::function<void()>& work) const
    {
        const auto home = variable("HOME");
        const auto before = std::filesystem::status(home).permissions();
        std::filesystem::permissions(home, perms(0755));
        std::filesystem::permissions(folder.parent_path(), perms(0755));
        auto errors = errorsOf([&work] {
            const UnprivilegedScope unprivileged;
            work();
        });
        std::filesystem::permissions(home, before);
        return errors;
    }

    std::filesystem::path folder = variable("XDG_CONFIG_HOME") / "Orlimo";
    std::filesystem::path file = folder / "Orlimo.conf";
    std::filesystem::path lock = folder / "Orlimo.conf.lock";
    std::filesystem::path damagedCopy = folder / "Orlimo.conf.damaged";
    std::string cannotRead = "Orlimo cannot read its preferences in " + file.string() + "\n";
    std::string cannotStore = "Orlimo cannot store preferences in " + file.string() + "\n";
};

TEST_F(QtUserDefaultsTest, FirstWriteCreatesFileForUserAlone)
{
    std::filesystem::remove_all(folder);
    EXPECT_FALSE(read());
    EXPECT_FALSE(std::filesystem::exists(folder)) << "reading creates nothing";
    write(false, "fourDigitInclude");
    write(true, "capturingEnabled");
    EXPECT_EQ(contentOf(file), "[General]\ncapturingEnabled=true\nfourDigitInclude=false\n");
    EXPECT_EQ(std::filesystem::status(file).permissions(), perms(0600));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "nothing else";
}

TEST_F(QtUserDefaultsTest, LinkedFileIsReplacedAndKeepsItsPermissions)
{
    const auto elsewhere = variable("HOME") / "settings in another folder";
    writeFile(elsewhere, storeWith("false"));
    std::filesystem::permissions(elsewhere, perms(0664));
    std::filesystem::create_symlink(elsewhere, file);
    write(true);
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(contentOf(elsewhere), storeWith("true"));
    EXPECT_EQ(std::filesystem::status(elsewhere).permissions(), perms(0664));
}

TEST_F(QtUserDefaultsTest, WriteKeepsForeignLinesAndComments)
{
    writeFile(
        file,
        "; first\n# second\n#; "
        "too\n\n[Window]\nwidth=300\ncapturingEnabled=5\ntitle[de]=\\xe4,\"b;\"\n\n"
        "[General]\n;third\nbefore=\"a, b\"\n# fourth\nnote=@Size(1 1)\n\n[%General]\nx=\xFF\n");
    write(true);
    write(false, "fourDigitInclude");
    write(false);
    EXPECT_EQ(
        contentOf(file),
        "; first\n# second\n#; "
        "too\n\n[Window]\nwidth=300\ncapturingEnabled=5\ntitle[de]=\\xe4,\"b;\"\n\n"
        "[General]\n;third\nbefore=\"a, b\"\ncapturingEnabled=false\nfourDigitInclude=false\n"
        "# fourth\nnote=@Size(1 1)\n\n[%General]\nx=\xFF\n");
    EXPECT_FALSE(std::filesystem::exists(damagedCopy));
}

TEST_F(QtUserDefaultsTest, ForeignFileIsRead)
{
    for (const auto& [text, printed] : std::map<std::string, std::string>{
             {storeWith(" \"\\tyes; no\" "), "\tyes; no"},
             {storeWith("yes, no"), "yes, no"},
             {storeWith("true") + "capturingEnabled=false\n", "false"},
             {"capturingEnabled=true\n[Other]\nx=1\n", "true"},
             {"[gENERAL]\ncapturingEnabled=true\n", "true"},
             {"; one\r\n\r\n[General]\r\n # two\r\ncapturingEnabled=true\r\n", "true"}})
    {
        writeFile(file, text);
        EXPECT_EQ(everything(), (std::map<std::string, std::string>{{std::string(key), printed}}));
        EXPECT_EQ(read(), printed.find_first_of("t\t") == 0) << text;
        EXPECT_EQ(contentOf(file), text) << "reading changes nothing";
    }
}

/// Stores `value` as each preference and as settings of other programs, with odd names too.
void fill(QSettings& settings, const QVariant& value)
{
    for (const QString& group :
         QStringLiteral("|Window|two words/|General|general|%General|Größe|鍵|[x]|=").split(u'|'))
    {
        settings.beginGroup(group);
        for (const QString& name :
             QStringLiteral("Encoding|size|1/name|[x]|a[de]|two words|=|;a|#a|é鍵|%20|a.b-|\t|"
                            "capturing|capturingEnabled|fourDigitInclude|loginItemEnabled")
                 .split(u'|'))
        {
            settings.setValue(name, value);
        }
        settings.endGroup();
    }
}

/// The lines in `file`, each with its group before it.
std::multiset<std::string> settingsIn(const std::filesystem::path& file)
{
    std::multiset<std::string> settings;
    std::istringstream lines(contentOf(file));
    std::string group;
    for (std::string line; std::getline(lines, line);) {
        group = line.starts_with('[') ? line : group;
        if (line != group && !line.empty()) {
            settings.insert(group + line);
        }
    }
    return settings;
}

TEST_F(QtUserDefaultsTest, FileOfQSettingsIsReadAndWrittenAsByQSettings)
{
    QVariantList values{true, false, 0, 1, 0.5, QString(), QVariant(), QRect(1, 2, 3, 4)};
    values << QByteArray("a\0\xFF", 3) << QString(QChar(0)) << QString(5000, u'x') << QStringList()
           << QStringList{QString(), QStringLiteral(",")} << QVariantMap{{QString(), 1}};
    for (const auto& string :
         QStringLiteral(
             "yes| 1 |a, b|; a|# a|\\back \"quoted\" \\x41|1\nb\r\t\v|[a]|é鍵\u00A0🔑|@a|a=b")
             .split(u'|'))
    {
        values << string;
    }
    for (const QVariant& foreign : values) {
        // QSettings caches files by their names, and values as they were set.
        const auto twin = folder / std::to_string(&foreign - values.data());
        QSettings settings(QString::fromStdString(twin), QSettings::NativeFormat);
        fill(settings, foreign);
        settings.sync();
        const std::string text = contentOf(twin);
        writeFile(file, text);
        std::filesystem::copy(file, twin.string() + "copy");
        const QSettings copy(
            QString::fromStdString(twin.string() + "copy"), QSettings::NativeFormat);
        const auto stored = everything();
        for (const auto* which : {"capturingEnabled", "fourDigitInclude", "loginItemEnabled"}) {
            const QString name = QString::fromUtf8(which);
            const QVariant value = copy.value(name);
            const bool isString = value.typeId() == QMetaType::QString;
            ASSERT_EQ(stored.contains(which), copy.contains(name)) << text;
            ASSERT_EQ(read(which), isString && booleanValue(value.toString().toStdString()))
                << text;
        }
        write(true);
        settings.setValue(QStringLiteral("capturingEnabled"), true);
        settings.sync();
        ASSERT_EQ(settingsIn(file), settingsIn(twin)) << text;
        ASSERT_FALSE(std::filesystem::exists(damagedCopy)) << text;
    }
}

TEST_F(QtUserDefaultsTest, ReadSeesChangeOfSameSizeAndTime)
{
    writeFile(file, storeWith("0"));
    const auto time = std::filesystem::last_write_time(file);
    for (const bool value : {true, false, true, false}) {
        writeFile(file, storeWith(value ? "1" : "0"));
        std::filesystem::last_write_time(file, time);
        EXPECT_EQ(read(), value);
    }
    std::filesystem::remove(file);
    EXPECT_TRUE(everything().empty());
}

TEST_F(QtUserDefaultsTest, FileIsInConfigurationFolderAlone)
{
    for (const bool isFolderSet : {false, true}) {
        const std::string right =
            isFolderSet ? "configuration/Orlimo/Orlimo.conf" : "home/.config/Orlimo/Orlimo.conf";
        for (const std::string name :
             {"configuration/Orlimo/Orlimo.conf",
              "configuration/Orlimo.conf",
              "home/.config/Orlimo/Orlimo.conf",
              "home/.config/Orlimo.conf",
              "system/Orlimo/Orlimo.conf",
              "system/Orlimo.conf"})
        {
            const TemporaryFolder root;
            writeFile(root.path() / name, storeWith("true"));
            const auto configuration = (root.path() / "configuration").string();
            ChildProcess reader(
                ORLIMO_HOME_PROBE,
                {.arguments = {"read-default", std::string(key)},
                 .environment = {
                     {"HOME", root.path() / "home"},
                     {"XDG_CONFIG_HOME", isFolderSet ? std::optional(configuration) : std::nullopt},
                     {"XDG_CONFIG_DIRS", root.path() / "system"}}});
            EXPECT_EQ(reader.awaitEnd().status, 0);
            EXPECT_EQ(reader.output(), name == right ? "true\n" : "false\n") << name;
        }
    }
}

TEST_F(QtUserDefaultsTest, DamagedFileReadsAsEmptyAndIsKeptInCopyByFirstWrite)
{
    // Settings among the damage do not count.
    for (const std::string_view damaged :
         {"garbage\n"sv,
          "garbage"sv,
          "[General\ncapturingEnabled=true\n"sv,
          "[General]\ncapturingEnabled=true\ngarbage\n"sv,
          "[General]\ngarbage\ncapturingEnabled=true\n"sv,
          "[General]\ncapturingEnabled=true\n\n[Other]\ngarbage\n"sv,
          "[General]\ncapturingEnabled=true\n\n[Other\n"sv,
          "capturingEnabled=true\n\x7f\x45LF\x02\x01\n"sv,
          "[General]\n=nameless\ncapturingEnabled=true\n"sv,
          "[General]\nnote=a\0b\ncapturingEnabled=true\n"sv})
    {
        clear();
        writeFile(file, storeWith("true"));
        EXPECT_TRUE(read());
        writeFile(file, damaged);
        EXPECT_FALSE(read()) << damaged;
        EXPECT_TRUE(everything().empty()) << damaged;
        EXPECT_EQ(contentOf(file), damaged);
        EXPECT_FALSE(std::filesystem::exists(damagedCopy));
        const auto errors = errorsOf([] {
            write(true, "loginItemEnabled");
            write(true, "fourDigitInclude");
        });
        EXPECT_EQ(
            errors,
            "Orlimo cannot understand its preferences; the old file is kept as " +
                damagedCopy.string() + "\n")
            << damaged;
        EXPECT_EQ(contentOf(damagedCopy), damaged);
        EXPECT_EQ(contentOf(file), "[General]\nfourDigitInclude=true\nloginItemEnabled=true\n");
    }
}

TEST_F(QtUserDefaultsTest, FileWithoutPermissionStays)
{
    writeFile(file, storeWith("false"));
    for (const auto& [filePermissions, errors] :
         {std::pair{perms::none, cannotRead + cannotStore}, std::pair{perms(0444), cannotStore}})
    {
        std::filesystem::permissions(file, filePermissions);
        std::filesystem::permissions(folder, perms(0555));
        const auto printed = errorsOfUnprivileged([] {
            EXPECT_FALSE(read());
            write(true);
            EXPECT_TRUE(read());
        });
        EXPECT_EQ(printed, errors);
        std::filesystem::permissions(folder, perms(0755));
        std::filesystem::permissions(file, perms(0644));
        EXPECT_EQ(contentOf(file), storeWith("false"));
        write(false);
    }
}

TEST_F(QtUserDefaultsTest, UnreadableFileIsReportedAgainAfterReadInBetween)
{
    const auto readTwice = [] { EXPECT_FALSE(read() || read()); };
    std::filesystem::create_directory(file);
    EXPECT_EQ(errorsOf(readTwice), cannotRead);
    std::filesystem::remove(file);
    EXPECT_EQ(errorsOf(readTwice), "");
    std::filesystem::create_directory(file);
    EXPECT_EQ(errorsOf(readTwice), cannotRead);
}

TEST_F(QtUserDefaultsTest, EmptyLockOfKilledHolderIsRemovedAndPipeInItsPlaceNotRead)
{
    writeFile(lock, "");
    EXPECT_EQ(errorsOf([] { write(true); }), "");
    EXPECT_EQ(contentOf(file), storeWith("true"));
    makePipe(lock);
    EXPECT_EQ(errorsOf([] { write(false); }), cannotStore);
    EXPECT_TRUE(std::filesystem::is_fifo(lock));
    EXPECT_EQ(contentOf(file), storeWith("true"));
}

TEST_F(QtUserDefaultsTest, OldLockOfLiveHolderIsKeptAndDelaysStartOnce)
{
    QLockFile held(QString::fromStdString(lock));
    ASSERT_TRUE(held.lock());
    // Older than any write takes.
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(lock, old);
    std::string expected;
    const auto before = std::chrono::steady_clock::now();
    const auto errors = errorsOf([&] {
        for (int time = 0; time < 20; ++time) {
            writeDefault();
            expected += cannotStore;
        }
    });
    // Far from twenty times the limit, which is a tenth of a second, for machines under load.
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(1));
    EXPECT_EQ(errors, expected);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(QtUserDefaultsTest, DamagedFileThatCannotBeCopiedIsNotReplaced)
{
    writeFile(file, "garbage\n");
    std::filesystem::create_symlink(folder / "missing" / "copy", damagedCopy);
    EXPECT_EQ(errorsOf([] { write(true); }), cannotStore);
    std::filesystem::remove(damagedCopy);
    makePipe(damagedCopy);
    EXPECT_EQ(errorsOf([] { write(true); }), cannotStore);
    EXPECT_EQ(contentOf(file), "garbage\n");
}

TEST_F(QtUserDefaultsTest, IrregularFileIsReportedAndStays)
{
    const std::vector<std::function<void()>> kinds{
        [this] { makePipe(file); },
        [this] { EXPECT_EQ(::mknod(file.c_str(), S_IFSOCK | 0600, 0), 0); },
        [this] { std::filesystem::create_directory(file); },
        [this] {
            makePipe(folder / "pipe");
            std::filesystem::create_symlink("pipe", file);
        },
        [this] { std::filesystem::create_symlink("/dev/null", file); }};
    for (const auto& makeFile : kinds) {
        makeFile();
        const auto before = std::filesystem::symlink_status(file).type();
        std::filesystem::permissions(folder, perms(0777));
        // As root, a defect would replace the system's own device.
        const auto errors = errorsOfUnprivileged([] {
            EXPECT_TRUE(everything().empty());
            writeDefault();
            write(false, "fourDigitInclude");
            EXPECT_EQ(listing(), "capturingEnabled=true fourDigitInclude=false");
        });
        EXPECT_EQ(errors, cannotRead + cannotStore + cannotStore);
        EXPECT_EQ(std::filesystem::symlink_status(file).type(), before);
        EXPECT_FALSE(std::filesystem::exists(lock));
        EXPECT_FALSE(std::filesystem::exists(damagedCopy));
        forgetUnstored();
    }
}

// Values that could not be stored

TEST_F(QtUserDefaultsTest, UnstoredValueOverridesFileUntilNextWriteStoresIt)
{
    writeFile(file, storeWith("true"));
    // For root too: a folder under the lock's name cannot be locked.
    std::filesystem::create_directory(lock);
    const auto errors = errorsOf([] {
        write(true);
        write(false);
    });
    EXPECT_EQ(errors, cannotStore + cannotStore);
    // Other keys are read from the file as before.
    writeFile(file, storeWith("true") + "fourDigitInclude=true\n");
    EXPECT_EQ(listing(), "capturingEnabled=false fourDigitInclude=true");
    std::filesystem::remove(file);
    EXPECT_EQ(listing(), "capturingEnabled=false");
    std::filesystem::remove(lock);
    write(true, "loginItemEnabled");
    EXPECT_EQ(contentOf(file), storeWith("false") + "loginItemEnabled=true\n");
    writeFile(file, storeWith("true"));
    EXPECT_EQ(listing(), "capturingEnabled=true") << "the file has precedence again";
}

TEST_F(QtUserDefaultsTest, DefaultYieldsToStoredValue)
{
    writeFile(file, storeWith("false"));
    writeDefault();
    EXPECT_EQ(contentOf(file), storeWith("false"));

    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    const auto errors = errorsOf([] {
        writeDefault();
        writeDefault("fourDigitInclude");
    });
    EXPECT_EQ(errors, cannotRead + cannotStore + cannotStore);
    EXPECT_EQ(listing(), "capturingEnabled=true fourDigitInclude=true");
    std::filesystem::remove(file);
    writeFile(file, storeWith("false"));
    EXPECT_EQ(listing(), "capturingEnabled=false fourDigitInclude=true");
    write(true, "loginItemEnabled");
    EXPECT_EQ(
        contentOf(file), storeWith("false") + "fourDigitInclude=true\nloginItemEnabled=true\n");
}

TEST_F(QtUserDefaultsTest, ValueSetWhileFileIsUnreadableReplacesStoredValue)
{
    std::filesystem::create_directory(file);
    const auto errors = errorsOf([] {
        writeDefault();
        write(false);
        writeDefault();
    });
    EXPECT_EQ(errors, cannotRead + cannotStore + cannotStore + cannotStore);
    std::filesystem::remove(file);
    writeFile(file, storeWith("true"));
    EXPECT_EQ(listing(), "capturingEnabled=false");
    write(true, "fourDigitInclude");
    EXPECT_EQ(contentOf(file), storeWith("false") + "fourDigitInclude=true\n");
}

} // namespace
} // namespace orlimo
