#include "tests/program/ProgramSession.h"
#include "tests/support/Await.h"
#include "tests/support/StoreIntegrity.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

using Preferences = std::map<std::string, std::string>;

/// The number in a variable of the environment.
unsigned numberFrom(const char* variable, unsigned otherwise)
{
    const char* const value =
        std::getenv(variable); // NOLINT(concurrency-mt-unsafe): never set here
    return value == nullptr ? otherwise : static_cast<unsigned>(std::stoul(value));
}

/// What is in `file`, which a program that runs may take away at any moment; absent when it has.
std::optional<std::string> presentContentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return stream.is_open() ? std::optional(std::string(std::istreambuf_iterator(stream), {}))
                            : std::nullopt;
}

/// The file in which these preferences are stored.
std::string fileOf(const Preferences& preferences)
{
    std::string text = "[General]\n";
    for (const auto& [key, value] : preferences) {
        text.append(key).append("=").append(value).append("\n");
    }
    return text;
}

/// Every content that the settings file may have from `before` on, the final one last.
std::vector<std::string> stagesFrom(const std::optional<Preferences>& before)
{
    std::vector<std::string> stages;
    if (before) {
        stages.push_back(fileOf(*before));
    }
    Preferences preferences = before.value_or(Preferences{});
    for (const char* const key : {"capturingEnabled", "fourDigitInclude", "loginItemEnabled"}) {
        if (preferences.emplace(key, "true").second) {
            stages.push_back(fileOf(preferences));
        }
    }
    return stages;
}

/// What a user's configuration may look like when the program starts.
const std::array<std::optional<Preferences>, 5> knownPreferences{
    std::nullopt,
    Preferences{{"note", "not ours"}},
    Preferences{{"fourDigitInclude", "false"}, {"note", "not ours"}},
    Preferences{{"capturingEnabled", "false"}, {"fourDigitInclude", "false"}},
    Preferences{
        {"capturingEnabled", "true"}, {"fourDigitInclude", "true"}, {"loginItemEnabled", "false"}},
};

constexpr const char* olderEntry = "[Desktop Entry]\nType=Application\nName=Orlimo\n"
                                   "Exec=/usr/bin/orlimo --launched-at-login\n";
constexpr const char* usersMark = "Hidden=true\n";

const std::array<std::optional<std::string>, 3> knownEntries{
    std::nullopt,
    olderEntry,
    std::string(olderEntry) + usersMark,
};

/// The program and the writer, killed at moments that a seed decides.
class KillTest : public testing::Test
{
protected:
    void SetUp() override
    {
        std::cout << "ORLIMO_KILL_SEED=" << seed << '\n';
        session.startWriter();
        session.startProgram();
        ASSERT_TRUE(await([this] { return std::filesystem::exists(session.autostartEntry()); }));
        entry = presentContentOf(session.autostartEntry()).value_or("");
    }

    [[nodiscard]] std::size_t pick(std::size_t below)
    {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(dice);
    }

    void makeConfiguration()
    {
        preferencesBefore = knownPreferences[pick(knownPreferences.size())];
        entryBefore = knownEntries[pick(knownEntries.size())];
        put(session.preferences(),
            preferencesBefore ? std::optional(fileOf(*preferencesBefore)) : std::nullopt);
        put(session.autostartEntry(), entryBefore);
    }

    static void put(const std::filesystem::path& file, const std::optional<std::string>& content)
    {
        std::filesystem::remove(file);
        if (content) {
            writeFile(file, *content);
        }
    }

    /// What the entry is once the program has registered itself.
    [[nodiscard]] std::string registeredEntry() const
    {
        const bool isMarked = entryBefore && entryBefore->ends_with(usersMark);
        return entry + (isMarked ? usersMark : "");
    }

    /// Starts the program, has messages come, and kills one of the two or both in the midst of it.
    void killDuringStart()
    {
        session.startProgram();
        // A start takes less than that, so that every part of it is met.
        const auto moment =
            std::chrono::steady_clock::now() + std::chrono::microseconds(pick(150'000));
        do {
            session.writer().writeLine("text Code " + std::to_string(100'000 + sent++));
            std::this_thread::sleep_for(std::chrono::microseconds(pick(3000)));
        } while (std::chrono::steady_clock::now() < moment);
        const std::size_t whom = pick(4);
        if (whom != 0) {
            session.program().signal(SIGKILL);
            EXPECT_EQ(session.program().awaitEnd().signal, SIGKILL);
        }
        if (whom <= 1) {
            session.writer().signal(SIGKILL);
            EXPECT_EQ(session.writer().awaitEnd().signal, SIGKILL);
        }
    }

    /// What the writer has reported to be committed.
    void countCommits()
    {
        const auto isCommit = [](const auto& line) { return line.starts_with("committed"); };
        committed += std::ranges::count_if(linesOf(session.writer().output()), isCommit);
    }

    void expectWholeStore()
    {
        EXPECT_EQ(integrityOf(session.store()), "ok");
        const int present = messagesIn(session.store());
        EXPECT_GE(present, committed);
        EXPECT_LE(present, sent);
    }

    void expectWholeConfiguration() const
    {
        const auto stages = stagesFrom(preferencesBefore);
        if (const auto settings = presentContentOf(session.preferences())) {
            EXPECT_THAT(stages, testing::Contains(*settings));
        } else {
            EXPECT_FALSE(preferencesBefore) << "the settings are lost";
        }
        if (const auto present = presentContentOf(session.autostartEntry())) {
            EXPECT_THAT(*present, testing::AnyOf(entryBefore.value_or(entry), registeredEntry()));
        } else {
            // Registering anew begins with taking the old entry away.
            EXPECT_NE(registeredEntry(), entry + usersMark) << "the user's mark is lost";
        }
    }

    /// Starts the program where it was killed, and has it come to the end of its start.
    void expectStart()
    {
        if (!session.program().isRunning()) {
            session.startProgram();
        }
        EXPECT_TRUE(session.program().awaitLine("file access allowed"))
            << session.program().output() << session.program().errors();
        const std::string finalState = stagesFrom(preferencesBefore).back();
        EXPECT_TRUE(await([&] { return isInFinalState(finalState); }, 20s))
            << presentContentOf(session.preferences()).value_or("no settings")
            << session.program().errors();
        EXPECT_EQ(session.program().errors(), "");
    }

    [[nodiscard]] bool isInFinalState(const std::string& preferences) const
    {
        return presentContentOf(session.preferences()) == preferences &&
               presentContentOf(session.autostartEntry()) == registeredEntry();
    }

    void killAndCheck(unsigned kills)
    {
        for (unsigned kill = 0; kill < kills && !HasFailure(); ++kill) {
            const testing::ScopedTrace trace(__FILE__, __LINE__, kill);
            session.program().signal(SIGKILL);
            session.program().awaitEnd();
            makeConfiguration();
            killDuringStart();
            if (!session.writer().isRunning()) {
                countCommits();
                // Before anybody else looks: whoever closes a store as the last one takes its log
                // away.
                session.startWriter();
            }
            expectWholeStore();
            expectWholeConfiguration();
            expectStart();
        }
        ASSERT_FALSE(HasFailure());
        // The program has come through all that and notices what comes next.
        ProgramSession::waitForThrottle();
        put(session.preferences(), fileOf({{"capturingEnabled", "true"}}));
        session.writer().writeLine("text Code 482913");
        EXPECT_TRUE(session.program().awaitLine("file changed!! at message: code? 482913"));
    }

    const unsigned seed = numberFrom("ORLIMO_KILL_SEED", std::random_device()());
    std::mt19937 dice{seed};
    ProgramSession session{{// No window opens by itself then, for want of a tray.
                            .arguments = {"--launched-at-login"}}};
    std::string entry;
    std::optional<Preferences> preferencesBefore;
    std::optional<std::string> entryBefore;
    int sent = 0;
    std::ptrdiff_t committed = 0;
};

TEST_F(KillTest, LeavesStoreAndConfigurationWhole)
{
    killAndCheck(6);
}

TEST_F(KillTest, SlowLeavesStoreAndConfigurationWhole)
{
    killAndCheck(numberFrom("ORLIMO_KILLS", 60));
}

} // namespace
} // namespace orlimo
