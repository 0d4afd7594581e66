#include "tests/desktop/sessions/DesktopProgram.h"

#include <QCryptographicHash>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>

#include <fcntl.h>

namespace orlimo {
namespace {

/// What the store and its log hold, and when each was last written.
struct StoreState
{
    std::map<std::string, std::pair<std::string, std::filesystem::file_time_type>> files;

    explicit StoreState(const ProgramSession& session)
    {
        for (const auto& file : {session.store(), session.log()}) {
            const std::string content = contentOf(file);
            EXPECT_FALSE(content.empty()) << file;
            const QByteArray hash = QCryptographicHash::hash(
                QByteArray::fromRawData(content.data(), static_cast<qsizetype>(content.size())),
                QCryptographicHash::Sha256);
            files[file.filename().string()] = {
                hash.toHex().toStdString(), std::filesystem::last_write_time(file)};
        }
    }

    bool operator==(const StoreState&) const = default;
};

/// The flags with which `process` has `file` open, once for each descriptor.
std::multiset<int> openFlags(pid_t process, const std::filesystem::path& file)
{
    const std::filesystem::path folder = "/proc/" + std::to_string(process);
    std::multiset<int> all;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "fd")) {
        std::error_code gone;
        if (std::filesystem::read_symlink(entry.path(), gone) != file) {
            continue;
        }
        const std::string text = contentOf(folder / "fdinfo" / entry.path().filename());
        const std::size_t flags = text.find("flags:");
        EXPECT_NE(flags, std::string::npos) << text;
        constexpr int octal = 8;
        all.insert(std::stoi(text.substr(flags + 6), nullptr, octal));
    }
    return all;
}

/// The access modes among the flags.
std::multiset<int> accessOf(const std::multiset<int>& flags)
{
    std::multiset<int> modes;
    for (const int one : flags) {
        modes.insert(one & O_ACCMODE);
    }
    return modes;
}

/// The program on a store that nobody else changes, unless a test does.
class StoreIntegrity : public testing::Test
{
protected:
    void SetUp() override
    {
        program.session().deliver("text Your code is 482913.");
        program.session().deliver("body Your code is 59302.");
    }

    /// The writer ends, as the Messages application does; the log stays.
    void endWriter()
    {
        program.session().writer().closeInput();
        EXPECT_EQ(program.session().writer().awaitEnd().status, 0);
    }

    /// Has the window read the store.
    void readInWindow()
    {
        program.open();
        EXPECT_TRUE(program.awaitShown("label", "59302"));
        program.close();
    }

    DesktopProgram program;
};

TEST_F(StoreIntegrity, OutlastsAWholeRunFromStartToQuit)
{
    endWriter();
    const StoreState before(program.session());
    program.start();
    readInWindow();
    EXPECT_EQ(StoreState(program.session()), before);

    program.open();
    program.click("push button", "Quit");
    EXPECT_EQ(program.process().awaitEnd().status, 0);
    EXPECT_EQ(StoreState(program.session()), before);
}

TEST_F(StoreIntegrity, OutlastsAProgramThatIsEndedFromOutside)
{
    endWriter();
    const StoreState before(program.session());
    for (const int number : {SIGTERM, SIGKILL}) {
        program.start();
        readInWindow();
        program.process().signal(number);
        (void)program.process().awaitEnd();
        EXPECT_EQ(StoreState(program.session()), before) << "after signal " << number;
    }
}

TEST_F(StoreIntegrity, OutlastsCaptures)
{
    program.start();
    for (const char* code : {"111222", "333444"}) {
        ProgramSession::waitForThrottle();
        program.session().deliver(std::string("text Your code is ") + code + ".");
        const StoreState before(program.session());
        EXPECT_TRUE(program.awaitPaste(code));
        EXPECT_EQ(StoreState(program.session()), before);
    }
}

TEST_F(StoreIntegrity, IsOpenAsItHasToBeAndHandedOnToNobody)
{
    program.start();
    readInWindow();
    const pid_t process = program.process().processId();
    const auto storeFlags = openFlags(process, program.session().store());
    const auto logFlags = openFlags(process, program.session().log());
    // SQLite's own descriptors are for reading and writing, as the store is opened; the watch only
    // reads.
    EXPECT_EQ(accessOf(storeFlags), (std::multiset<int>{O_RDWR}));
    EXPECT_EQ(accessOf(logFlags), (std::multiset<int>{O_RDONLY, O_RDWR}));
    for (const auto& all : {storeFlags, logFlags}) {
        for (const int flags : all) {
            EXPECT_NE(flags & O_CLOEXEC, 0) << flags;
        }
    }
}

} // namespace
} // namespace orlimo
