#include "platform/preferences/UserDefaults.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <QLockFile>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

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

/// Prints a line with every preference, and an exclamation mark after those that are read as
/// something else than they are listed.
void report()
{
    std::string line;
    for (const auto& [name, value] : everything()) {
        line += (line.empty() ? "" : " ") + name + "=" + value;
        line += read(name) == (value == "true") ? "" : "!";
    }
    (void)std::puts(line.c_str());
}

class QtUserDefaultsTest : public testing::Test
{
protected:
    void SetUp() override { clear(); }
    void TearDown() override { clear(); }

    void clear() const
    {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }

    /// What `work` writes to standard error, and its end, in a process of an ordinary user.
    [[nodiscard]] ForkedRun runUnprivileged(const std::function<void()>& work) const
    {
        const auto home = variable("HOME");
        const auto before = std::filesystem::status(home).permissions();
        std::filesystem::permissions(home, perms(0755));
        std::filesystem::permissions(folder.parent_path(), perms(0755));
        auto run = runForked([&work] {
            becomeUnprivilegedUser();
            work();
        });
        std::filesystem::permissions(home, before);
        return run;
    }

    /// Has every write be refused, for root too, until writes are allowed again: no lock can be
    /// made where there is a folder.
    void refuseWrites() const { std::filesystem::create_directory(lock); }
    void allowWrites() const { std::filesystem::remove(lock); }

    std::filesystem::path folder = variable("XDG_CONFIG_HOME") / "Orlimo";
    std::filesystem::path file = folder / "Orlimo.conf";
    std::filesystem::path lock = folder / "Orlimo.conf.lock";
    std::filesystem::path damagedCopy = folder / "Orlimo.conf.damaged";
    std::string cannotRead = "Orlimo cannot read its preferences in " + file.string() + "\n";
    std::string cannotStore = "Orlimo cannot store preferences in " + file.string() + "\n";
};

TEST_F(QtUserDefaultsTest, ReadingWritesNothing)
{
    EXPECT_FALSE(read());
    EXPECT_TRUE(everything().empty());
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(QtUserDefaultsTest, IsAFileInTheUsersConfigurationFolder)
{
    write(true, "capturingEnabled");
    write(false, "fourDigitInclude");
    EXPECT_EQ(contentOf(file), "[General]\ncapturingEnabled=true\nfourDigitInclude=false\n");
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename());
    }
    EXPECT_EQ(names, std::vector<std::string>{"Orlimo.conf"});
}

TEST_F(QtUserDefaultsTest, IsInTheFileAtOnce)
{
    for (const bool value : {true, false, true}) {
        write(value);
        EXPECT_EQ(contentOf(file), storeWith(value ? "true" : "false"));
    }
}

TEST_F(QtUserDefaultsTest, WritesThroughALink)
{
    const auto elsewhere = variable("HOME") / "settings in another folder";
    writeFile(elsewhere, storeWith("false"));
    std::filesystem::create_symlink(elsewhere, file);
    write(true);
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(contentOf(elsewhere), storeWith("true"));
    EXPECT_TRUE(read());
}

TEST_F(QtUserDefaultsTest, MakesTheFolderWhenItIsMissing)
{
    std::filesystem::remove_all(folder);
    EXPECT_FALSE(read());
    EXPECT_FALSE(std::filesystem::exists(folder));
    write(true);
    EXPECT_EQ(contentOf(file), storeWith("true"));
}

TEST_F(QtUserDefaultsTest, FileThatWouldBeDamagedByWritingItAgainIsReplacedAndKept)
{
    // A key without a name in a group of a group: the toolkit writes it as it cannot read it.
    const std::string odd = "[Odd/Group]\n=nameless\n[General]\nfourDigitInclude=true\n";
    writeFile(file, odd);
    EXPECT_TRUE(read("fourDigitInclude"));
    write(true);
    EXPECT_TRUE(read());
    EXPECT_EQ(contentOf(file), storeWith("true"));
    EXPECT_EQ(contentOf(damagedCopy), odd);
}

TEST_F(QtUserDefaultsTest, KeepsWhatOthersStoredWhenItWrites)
{
    writeFile(file, "[General]\nother=kept\n\n[Window]\nwidth=300\n");
    write(true);
    const std::map<std::string, std::string> expected{
        {"Window/width", "300"}, {"capturingEnabled", "true"}, {"other", "kept"}};
    EXPECT_EQ(everything(), expected);
}

TEST_F(QtUserDefaultsTest, KeysAreExactAndCaseSensitive)
{
    writeFile(
        file, "[General]\nCapturingEnabled=true\ncapturing=true\n[Other]\ncapturingEnabled=true\n");
    EXPECT_FALSE(read());
    EXPECT_TRUE(read("CapturingEnabled"));
}

TEST_F(QtUserDefaultsTest, ListsEveryKeyWithItsValue)
{
    EXPECT_TRUE(everything().empty());
    writeFile(file, "[General]\na=true\nb=\nc=two words\nd=7\n");
    const std::map<std::string, std::string> expected{
        {"a", "true"}, {"b", ""}, {"c", "two words"}, {"d", "7"}};
    EXPECT_EQ(everything(), expected);
}

TEST_F(QtUserDefaultsTest, ReadsOddValuesByTheRulesForBooleans)
{
    struct Case
    {
        std::string_view stored;
        bool meant;
    };
    for (const auto& [stored, meant] : std::vector<Case>{
             {"true", true},
             {"false", false},
             {"TRUE", true},
             {"YES", true},
             {"yes", true},
             {"NO", false},
             {"T", true},
             {"on", false},
             {"1", true},
             {"0", false},
             {"-1", true},
             {"2", true},
             {"00", false},
             {"0.5", true},
             {"0.0", false},
             {"12 months", true},
             {R"("yes")", true},
             {R"(" 1")", true},
             {R"("")", false},
             {"", false},
             {R"("0, 1")", false},
             {R"(\x79\x65s)", true},
             {"yes, no", false},
             {"1, 1", false},
             {"@Invalid()", false},
             {"@ByteArray(yes)", false},
             // a boolean, an integer, a number with a fraction, a long integer and a date
             {R"(@Variant(\0\0\0\x1\x1))", true},
             {R"(@Variant(\0\0\0\x1\0))", false},
             {R"(@Variant(\0\0\0\x2\0\0\0\x5))", true},
             {R"(@Variant(\0\0\0\x2\0\0\0\0))", false},
             {R"(@Variant(\0\0\0\x6?\xe0\0\0\0\0\0\0))", true},
             {R"(@Variant(\0\0\0\x6\0\0\0\0\0\0\0\0))", false},
             {R"(@Variant(\0\0\0\x4\0\0\0\0\0\0\0\x1))", true},
             {R"(@Variant(\0\0\0\x10\0%\xa8`\0\0\0\0\xff\0))", false},
             {"@Variant(nonsense)", false},
             {"@Size(1 1)", false}})
    {
        writeFile(file, storeWith(stored));
        EXPECT_EQ(read(), meant) << stored;
        EXPECT_EQ(contentOf(file), storeWith(stored)) << "reading changes nothing";
    }
}

TEST_F(QtUserDefaultsTest, TheLastOfEqualKeysCounts)
{
    writeFile(file, "[General]\ncapturingEnabled=true\ncapturingEnabled=false\n");
    EXPECT_FALSE(read());
}

TEST_F(QtUserDefaultsTest, ReadsAFileWithForeignLineBreaksAndComments)
{
    writeFile(file, "; a comment\r\n\r\n[General]\r\n; another\r\ncapturingEnabled=true\r\n");
    EXPECT_TRUE(read());
}

TEST_F(QtUserDefaultsTest, SeesWhatAnotherWriterChangedAtTheNextRead)
{
    write(true);
    EXPECT_TRUE(read());
    writeFile(file, storeWith("false"));
    EXPECT_FALSE(read());
    writeFile(file, storeWith("true"));
    EXPECT_TRUE(read());
    std::filesystem::remove(file);
    EXPECT_FALSE(read());
    EXPECT_TRUE(everything().empty());
}

TEST_F(QtUserDefaultsTest, SeesWhatAnotherWriterChangedAtTheNextReadWhenTheSizeIsTheSame)
{
    for (int round = 0; round < 200; ++round) {
        const bool value = round % 2 == 0;
        writeFile(file, storeWith(value ? "1" : "0"));
        ASSERT_EQ(read(), value) << "round " << round;
    }
}

TEST_F(QtUserDefaultsTest, SeesAFileThatAnotherWriterPutInThePlaceOfTheOldOne)
{
    // As programs write that keep the file whole at every moment.
    const auto replacement = folder / "replacement";
    for (int round = 0; round < 200; ++round) {
        const bool value = round % 2 == 0;
        writeFile(replacement, storeWith(value ? "1" : "0"));
        std::filesystem::rename(replacement, file);
        ASSERT_EQ(read(), value) << "round " << round;
    }
}

TEST_F(QtUserDefaultsTest, SeesAFileThatWasPutBackWithItsOldTime)
{
    writeFile(file, storeWith("1"));
    EXPECT_TRUE(read());
    const auto time = std::filesystem::last_write_time(file);
    writeFile(file, storeWith("0"));
    std::filesystem::last_write_time(file, time);
    EXPECT_FALSE(read());
}

TEST_F(QtUserDefaultsTest, WritesOverWhatAnotherProcessStored)
{
    write(true);
    writeFile(file, storeWith("false") + "fourDigitInclude=true\n");
    write(true);
    const std::map<std::string, std::string> expected{
        {"capturingEnabled", "true"}, {"fourDigitInclude", "true"}};
    EXPECT_EQ(everything(), expected);
}

/// What a process of its own reads in a home of its own in which `files` hold these contents.
std::string
readInHomeWith(const std::map<std::string, std::string>& files, bool configurationFolderIsSet)
{
    const TemporaryFolder home;
    for (const auto& [file, content] : files) {
        writeFile(home.path() / file, content);
    }
    ChildSettings settings{.arguments = {"read-default", std::string(key)}};
    settings.environment = {
        {"HOME", home.path() / "home"},
        {"XDG_CONFIG_HOME", std::nullopt},
        {"XDG_CONFIG_DIRS", home.path() / "system"}};
    if (configurationFolderIsSet) {
        settings.environment["XDG_CONFIG_HOME"] = home.path() / "configuration";
    }
    ChildProcess reader(ORLIMO_HOME_PROBE, settings);
    EXPECT_EQ(reader.awaitEnd().status, 0);
    return reader.output();
}

TEST_F(QtUserDefaultsTest, AreWhereTheUsersConfigurationFolderIs)
{
    EXPECT_EQ(
        readInHomeWith({{"configuration/Orlimo/Orlimo.conf", storeWith("true")}}, true), "true\n");
    EXPECT_EQ(
        readInHomeWith({{"home/.config/Orlimo/Orlimo.conf", storeWith("true")}}, false), "true\n");
}

TEST_F(QtUserDefaultsTest, AreNowhereElse)
{
    const std::string elsewhere = storeWith("true");
    EXPECT_EQ(
        readInHomeWith(
            {{"configuration/Orlimo.conf", elsewhere},
             {"home/.config/Orlimo/Orlimo.conf", elsewhere},
             {"home/.config/Orlimo.conf", elsewhere},
             {"system/Orlimo/Orlimo.conf", elsewhere},
             {"system/Orlimo.conf", elsewhere}},
            true),
        "false\n");
}

TEST_F(QtUserDefaultsTest, DoNotSufferFromDamageElsewhere)
{
    EXPECT_EQ(
        readInHomeWith(
            {{"configuration/Orlimo/Orlimo.conf", storeWith("true")},
             {"configuration/Orlimo.conf", "garbage"},
             {"system/Orlimo/Orlimo.conf", "garbage"},
             {"system/Orlimo.conf", "garbage"}},
            true),
        "true\n");
}

/// Files that cannot be understood. What they hold that could be is not believed.
constexpr std::array damagedFiles{
    "garbage\n"sv,
    "garbage"sv,
    "[General\ncapturingEnabled=true\n"sv,
    "[General]\ncapturingEnabled=true\ngarbage\n"sv,
    "[General]\ngarbage\ncapturingEnabled=true\n"sv,
    "[General]\ncapturingEnabled=true\n\n[Other]\ngarbage\n"sv,
    "[General]\ncapturingEnabled=true\n\n[Other\n"sv,
    "capturingEnabled=true\n\x7f\x45LF\x02\x01\n"sv,
};

TEST_F(QtUserDefaultsTest, ADamagedFileReadsAsEmptyEveryTimeAndIsLeftAsItIs)
{
    for (const std::string_view damaged : damagedFiles) {
        clear();
        writeFile(file, damaged);
        for (int time = 1; time <= 3; ++time) {
            EXPECT_FALSE(read()) << damaged << time;
            EXPECT_TRUE(everything().empty()) << damaged << time;
        }
        EXPECT_EQ(contentOf(file), damaged);
        EXPECT_FALSE(std::filesystem::exists(damagedCopy));
    }
}

TEST_F(QtUserDefaultsTest, ADamagedFileReadsAsEmptyWhenItIsListedFirst)
{
    for (const std::string_view damaged : damagedFiles) {
        clear();
        writeFile(file, damaged);
        EXPECT_TRUE(everything().empty()) << damaged;
        EXPECT_FALSE(read()) << damaged;
    }
}

TEST_F(QtUserDefaultsTest, AFileOfRandomBytesReadsAsEmpty)
{
    std::string bytes;
    std::uint32_t state = 12345;
    for (int number = 0; number < 100'000; ++number) {
        state = state * 1664525U + 1013904223U;
        bytes.push_back(static_cast<char>(state >> 24U));
    }
    writeFile(file, bytes);
    EXPECT_FALSE(read());
    EXPECT_TRUE(everything().empty());
    EXPECT_FALSE(read());
    EXPECT_TRUE(contentOf(file) == bytes);
}

TEST_F(QtUserDefaultsTest, AFileThatIsDamagedWhileInUseReadsAsEmpty)
{
    write(true);
    EXPECT_TRUE(read());
    appendToFile(file, "garbage\n");
    EXPECT_FALSE(read());
    EXPECT_FALSE(read());
}

TEST_F(QtUserDefaultsTest, ARepairedFileIsSeenAgain)
{
    for (const std::string_view damaged : damagedFiles) {
        clear();
        writeFile(file, damaged);
        EXPECT_FALSE(read()) << damaged;
        writeFile(file, storeWith("true"));
        EXPECT_TRUE(read()) << damaged;
        EXPECT_EQ(everything().size(), 1U) << damaged;
    }
}

TEST_F(QtUserDefaultsTest, TheFirstWriteOverADamagedFileKeepsACopy)
{
    for (const std::string_view damaged : damagedFiles) {
        clear();
        writeFile(file, damaged);
        const auto run = runForked([] { write(true, "loginItemEnabled"); });
        EXPECT_EQ(
            run.errors,
            "Orlimo cannot understand its preferences; the old file is kept as " +
                damagedCopy.string() + "\n")
            << damaged;
        EXPECT_EQ(contentOf(damagedCopy), damaged);
        EXPECT_TRUE(read("loginItemEnabled")) << damaged;
    }
}

TEST_F(QtUserDefaultsTest, TheWriteAfterThatChangesTheCopyNoMore)
{
    writeFile(file, "garbage\n");
    write(true);
    write(false);
    write(true, "fourDigitInclude");
    EXPECT_EQ(contentOf(damagedCopy), "garbage\n");
    EXPECT_FALSE(read());
    EXPECT_TRUE(read("fourDigitInclude"));
}

TEST_F(QtUserDefaultsTest, NoCopyIsMadeOfAFileThatIsWhole)
{
    writeFile(file, storeWith("true"));
    const auto run = runForked([] { write(false); });
    EXPECT_EQ(run.errors, "");
    EXPECT_FALSE(std::filesystem::exists(damagedCopy));
    writeFile(file, "");
    write(true);
    EXPECT_FALSE(std::filesystem::exists(damagedCopy));
}

TEST_F(QtUserDefaultsTest, AFolderInTheFilesPlaceReadsAsEmptyAndStays)
{
    std::filesystem::create_directories(file / "inside");
    const auto run = runForked([] {
        const bool empty = !read() && everything().empty();
        write(true);
        ::_exit(empty && read() ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, cannotRead + cannotStore);
    EXPECT_TRUE(std::filesystem::is_directory(file / "inside"));
}

TEST_F(QtUserDefaultsTest, AFileThatMayNotBeReadReadsAsEmptyAndStays)
{
    writeFile(file, storeWith("true"));
    std::filesystem::permissions(file, perms::none);
    const auto run = runUnprivileged([] {
        const bool empty = !read() && everything().empty() && !read();
        write(true);
        ::_exit(empty ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, cannotRead + cannotStore);
    std::filesystem::permissions(file, perms::owner_all);
    EXPECT_EQ(contentOf(file), storeWith("true"));
    EXPECT_FALSE(std::filesystem::exists(damagedCopy));
}

TEST_F(QtUserDefaultsTest, AHomeThatMayNotBeWrittenLeavesTheStoreAsItIs)
{
    writeFile(file, storeWith("false"));
    std::filesystem::permissions(file, perms(0444));
    std::filesystem::permissions(folder, perms(0555));
    const auto run = runUnprivileged([] {
        write(true);
        ::_exit(read() ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "Orlimo cannot store preferences in " + file.string() + "\n");
    std::filesystem::permissions(folder, perms(0755));
    EXPECT_EQ(contentOf(file), storeWith("false"));
}

TEST_F(QtUserDefaultsTest, AHomeThatMayNotBeWrittenStaysEmpty)
{
    std::filesystem::permissions(folder, perms(0555));
    const auto run = runUnprivileged([] {
        write(true);
        write(true, "fourDigitInclude");
        ::_exit(read() ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
    const std::string line = "Orlimo cannot store preferences in " + file.string() + "\n";
    EXPECT_EQ(run.errors, line + line);
    EXPECT_FALSE(std::filesystem::exists(file));
    std::filesystem::permissions(folder, perms(0755));
}

TEST_F(QtUserDefaultsTest, AnEarlierFailureIsNotReportedByALaterWrite)
{
    std::filesystem::create_directories(file);
    const auto run = runForked([this] {
        write(true);
        std::filesystem::remove(file);
        write(true);
        ::_exit(read() ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, cannotRead + cannotStore);
}

TEST_F(QtUserDefaultsTest, SaysAgainThatTheFileCannotBeReadWhenItCouldBeMeanwhile)
{
    std::filesystem::create_directories(file);
    const auto run = runForked([this] {
        const bool before = read() || read();
        std::filesystem::remove(file);
        const bool meanwhile = read();
        std::filesystem::create_directories(file);
        ::_exit(before || meanwhile || read() ? 1 : 0);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, cannotRead + cannotRead);
}

TEST_F(QtUserDefaultsTest, ALockWhoseHolderWasKilledBeforeItWroteItsNameIsTakenAway)
{
    writeFile(lock.string(), "");
    const auto run = runForked([] {
        write(true);
        ::_exit(read() ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
}

TEST_F(QtUserDefaultsTest, ALockIsNotTakenFromAHolderWhoIsAlive)
{
    QLockFile held(QString::fromStdString(lock.string()));
    ASSERT_TRUE(held.lock());
    // Older than any write takes.
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(lock.string(), old);
    const auto run = runForked([] { write(true); });
    EXPECT_EQ(run.errors, cannotStore);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(QtUserDefaultsTest, ALockThatStaysHeldDelaysAStartByLessThanIsFelt)
{
    QLockFile held(QString::fromStdString(lock.string()));
    ASSERT_TRUE(held.lock());
    const auto run = runForked([] {
        const auto before = std::chrono::steady_clock::now();
        for (const auto which : {key, "fourDigitInclude"sv, "loginItemEnabled"sv}) {
            writeDefault(which);
        }
        // Far from the limit, which is a tenth of a second in all, for machines under load.
        ::_exit(std::chrono::steady_clock::now() - before < std::chrono::seconds(1) ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, cannotStore + cannotStore + cannotStore);
}

TEST_F(QtUserDefaultsTest, AValueRefusedForALockIsStoredByTheNextWriteAfterItsRelease)
{
    const auto run = runForked([this] {
        QLockFile held(QString::fromStdString(lock.string()));
        (void)held.lock();
        write(true);
        held.unlock();
        write(false, "fourDigitInclude");
    });
    EXPECT_EQ(run.errors, cannotStore);
    EXPECT_EQ(contentOf(file), storeWith("true") + "fourDigitInclude=false\n");
}

TEST_F(QtUserDefaultsTest, ADamagedFileOfWhichNoCopyCanBeMadeIsNotReplaced)
{
    writeFile(file, "garbage\n");
    // A link into nowhere: no file comes into being under the copy's name.
    std::filesystem::create_symlink(folder / "missing" / "copy", damagedCopy);
    const auto run = runForked([] { write(true); });
    EXPECT_EQ(run.errors, cannotStore);
    EXPECT_EQ(contentOf(file), "garbage\n");
}

/// Something other than a regular file, in the place of the settings file.
struct IrregularFile
{
    std::string name;
    std::function<void(const std::filesystem::path& file)> make;
};

void makePipe(const std::filesystem::path& path)
{
    EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
    std::filesystem::permissions(path, perms(0666));
}

void makeSocket(const std::filesystem::path& path)
{
    EXPECT_EQ(::mknod(path.c_str(), S_IFSOCK | 0600, 0), 0);
}

class IrregularSettingsFile : public QtUserDefaultsTest,
                              public testing::WithParamInterface<IrregularFile>
{};

TEST_P(IrregularSettingsFile, CannotBeReadAndStays)
{
    GetParam().make(file);
    const auto before = std::filesystem::symlink_status(file).type();
    std::filesystem::permissions(folder, perms(0777));
    // As root, a defect would replace the system's own device.
    const auto run = runUnprivileged([] {
        report();
        writeDefault();
        write(false, "fourDigitInclude");
        report();
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "\ncapturingEnabled=true fourDigitInclude=false\n");
    EXPECT_EQ(run.errors, cannotRead + cannotStore + cannotStore);
    EXPECT_EQ(std::filesystem::symlink_status(file).type(), before);
    EXPECT_FALSE(std::filesystem::exists(lock));
    EXPECT_FALSE(std::filesystem::exists(damagedCopy));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds,
    IrregularSettingsFile,
    testing::Values(
        IrregularFile{"Pipe", makePipe},
        IrregularFile{"Socket", makeSocket},
        IrregularFile{"Folder", [](const auto& file) { std::filesystem::create_directory(file); }},
        IrregularFile{
            "LinkToPipe",
            [](const auto& file) {
                makePipe(file.parent_path() / "pipe");
                std::filesystem::create_symlink("pipe", file);
            }},
        IrregularFile{
            "LinkToNull",
            [](const auto& file) { std::filesystem::create_symlink("/dev/null", file); }}),
    [](const auto& kind) { return kind.param.name; });

TEST_F(QtUserDefaultsTest, APipeInTheLocksPlaceIsNotRead)
{
    makePipe(lock);
    const auto run = runForked([] {
        write(true);
        report();
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "capturingEnabled=true\n");
    EXPECT_EQ(run.errors, cannotStore);
    EXPECT_TRUE(std::filesystem::is_fifo(lock));
}

TEST_F(QtUserDefaultsTest, APipeInTheCopysPlaceIsNoCopy)
{
    writeFile(file, "garbage\n");
    makePipe(damagedCopy);
    const auto run = runForked([] { write(true); });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, cannotStore);
    EXPECT_EQ(contentOf(file), "garbage\n");
}

TEST_F(QtUserDefaultsTest, AValueThatCannotBeStoredHoldsInThisProcess)
{
    writeFile(file, storeWith("true"));
    refuseWrites();
    const auto run = runForked([this] {
        write(false);
        report();
        // Others still change their keys, and this one in vain.
        writeFile(file, storeWith("true") + "fourDigitInclude=true\n");
        report();
        std::filesystem::remove(file);
        report();
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(
        run.output,
        "capturingEnabled=false\n"
        "capturingEnabled=false fourDigitInclude=true\n"
        "capturingEnabled=false\n");
    EXPECT_EQ(run.errors, cannotStore);
}

TEST_F(QtUserDefaultsTest, AValueThatCouldNotBeStoredIsStoredWithTheNextWrite)
{
    writeFile(file, storeWith("true"));
    refuseWrites();
    const auto run = runForked([this] {
        write(false);
        allowWrites();
        report();
        write(true, "fourDigitInclude");
        const auto stored = contentOf(file);
        // From now on the file decides again.
        writeFile(file, storeWith("true"));
        report();
        (void)std::fputs(stored.c_str(), stdout);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(
        run.output,
        "capturingEnabled=false\ncapturingEnabled=true\n" + storeWith("false") +
            "fourDigitInclude=true\n");
    EXPECT_EQ(run.errors, cannotStore);
}

TEST_F(QtUserDefaultsTest, ARepeatedlyRefusedSwitchHoldsItsLastValue)
{
    refuseWrites();
    const auto run = runForked([] {
        for (const bool value : {true, false, true, false}) {
            write(value);
            report();
        }
    });
    EXPECT_EQ(
        run.output,
        "capturingEnabled=true\ncapturingEnabled=false\ncapturingEnabled=true\n"
        "capturingEnabled=false\n");
    EXPECT_EQ(run.errors, cannotStore + cannotStore + cannotStore + cannotStore);
}

TEST_F(QtUserDefaultsTest, ADefaultForAnUnreadableFileNeitherHidesNorReplacesWhatIsInIt)
{
    std::filesystem::create_directory(file);
    const auto run = runForked([this] {
        writeDefault();
        writeDefault("fourDigitInclude");
        report();
        std::filesystem::remove(file);
        writeFile(file, storeWith("false"));
        report();
        write(true, "loginItemEnabled");
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(
        run.output,
        "capturingEnabled=true fourDigitInclude=true\n"
        "capturingEnabled=false fourDigitInclude=true\n");
    EXPECT_EQ(run.errors, cannotRead + cannotStore + cannotStore);
    EXPECT_EQ(
        contentOf(file), storeWith("false") + "fourDigitInclude=true\nloginItemEnabled=true\n");
}

TEST_F(QtUserDefaultsTest, ADefaultThatTheFileHasSupersededIsNotHeldAgain)
{
    std::filesystem::create_directory(file);
    const auto run = runForked([this] {
        writeDefault();
        std::filesystem::remove(file);
        writeFile(file, storeWith("false"));
        report();
        std::filesystem::remove(file);
        report();
    });
    EXPECT_EQ(run.output, "capturingEnabled=false\n\n");
}

TEST_F(QtUserDefaultsTest, ADefaultNeverReplacesWhatAnotherProcessStoredMeanwhile)
{
    const auto run = runForked([this] {
        (void)everything();
        writeFile(file, storeWith("false"));
        writeDefault();
        report();
    });
    EXPECT_EQ(run.output, "capturingEnabled=false\n");
    EXPECT_EQ(run.errors, "");
}

TEST_F(QtUserDefaultsTest, ASwitchTurnedWhileTheFileIsUnreadableReplacesWhatIsInIt)
{
    std::filesystem::create_directory(file);
    const auto run = runForked([this] {
        writeDefault();
        write(false);
        std::filesystem::remove(file);
        writeFile(file, storeWith("true"));
        report();
        write(true, "fourDigitInclude");
    });
    EXPECT_EQ(run.output, "capturingEnabled=false\n");
    EXPECT_EQ(contentOf(file), storeWith("false") + "fourDigitInclude=true\n");
}

TEST_F(QtUserDefaultsTest, ASwitchTurnedOnceTheFileCanBeReadAgainIsStored)
{
    std::filesystem::create_directory(file);
    const auto run = runForked([this] {
        (void)read();
        std::filesystem::remove(file);
        writeFile(file, storeWith("true"));
        write(false);
    });
    EXPECT_EQ(run.errors, cannotRead);
    EXPECT_EQ(contentOf(file), storeWith("false"));
}

} // namespace
} // namespace orlimo
