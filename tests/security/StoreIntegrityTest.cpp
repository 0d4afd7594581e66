#include "tests/desktop/sessions/DesktopProgram.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>

#include <fcntl.h>

namespace orlimo {
namespace {

using StoreState = std::map<std::string, std::pair<std::string, std::filesystem::file_time_type>>;

/// What the store and its log hold, and when each was last written.
StoreState stateOf(const ProgramSession& session)
{
    StoreState state;
    for (const auto& file : {session.store(), session.log()}) {
        const std::string content = contentOf(file);
        EXPECT_FALSE(content.empty()) << file;
        state[file.filename().string()] = {content, std::filesystem::last_write_time(file)};
    }
    return state;
}

/// The access modes with which `process` has `file` open, once for each descriptor, none of which
/// a program that it starts inherits.
std::multiset<int> accessModes(pid_t process, const std::filesystem::path& file)
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
        const int value = std::stoi(text.substr(flags + 6), nullptr, octal);
        EXPECT_NE(value & O_CLOEXEC, 0) << value;
        all.insert(value & O_ACCMODE);
    }
    return all;
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

    /// Has the window read the store.
    void readInWindow()
    {
        program.open();
        EXPECT_TRUE(program.awaitShown("label", "59302"));
        program.close();
    }

    DesktopProgram program;
};

TEST_F(StoreIntegrity, OutlastsRunsThatQuitOrAreEnded)
{
    // The writer ends, as the Messages application does; the log stays.
    program.session().writer().closeInput();
    EXPECT_EQ(program.session().writer().awaitEnd().status, 0);
    const StoreState before = stateOf(program.session());
    for (const int number : {0, SIGTERM, SIGKILL}) {
        program.start();
        readInWindow();
        EXPECT_EQ(stateOf(program.session()), before);
        if (number == 0) {
            program.open();
            program.click("push button", "Quit");
            EXPECT_EQ(program.process().awaitEnd().status, 0);
        } else {
            program.process().signal(number);
            (void)program.process().awaitEnd();
        }
        EXPECT_EQ(stateOf(program.session()), before) << "after signal " << number;
    }
}

TEST_F(StoreIntegrity, IsOpenAsNeededAndNotInherited)
{
    program.start();
    readInWindow();
    const pid_t process = program.process().processId();
    // SQLite's own descriptors are for reading and writing, as the store is opened; the watch only
    // reads.
    EXPECT_EQ(accessModes(process, program.session().store()), (std::multiset<int>{O_RDWR}));
    EXPECT_EQ(
        accessModes(process, program.session().log()), (std::multiset<int>{O_RDONLY, O_RDWR}));
}

} // namespace
} // namespace orlimo
