#include "tests/program/ProgramSession.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/PreloadEnvironment.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace orlimo {
namespace {

/// What the writer does for each message.
enum class Commits {
    plain,
    onASlowDisk,     ///< each takes from 1.05 to 3.5 seconds after its last frame
    rightBehindACut, ///< the log is cut to nothing first
};

ProgramSession::Settings settingsOf(std::size_t run, Commits commits, const TemporaryFolder& folder)
{
    const std::array<std::string, 3> modes{"FULL", "NORMAL", "OFF"};
    ProgramSession::Settings settings;
    settings.synchronous = modes[run % (commits == Commits::plain ? 2 : modes.size())];
    if (commits == Commits::onASlowDisk) {
        settings.synchronous = "FULL"; // the others wait for no disk
        settings.writerEnvironment = preloadEnvironment({ORLIMO_SLOW_DISK});
        settings.writerEnvironment["ORLIMO_SLOW_DISK"] = folder.path() / std::to_string(run);
    }
    return settings;
}

/// Delivers 150 messages, in ten runs beside each other, to ten programs. Each must be there before
/// the next, and it must be the newest one: a reader that came too early would copy the code
/// before.
void deliverAndExpectAll(Commits commits)
{
    constexpr std::size_t runs = 10;
    constexpr int rounds = 15;
    const TemporaryFolder delays;
    std::vector<std::unique_ptr<ProgramSession>> sessions;
    for (std::size_t run = 0; run < runs; ++run) {
        sessions.push_back(std::make_unique<ProgramSession>(settingsOf(run, commits, delays)));
        sessions.back()->start();
        // From here on: the store's making would take as long for each of its commits.
        writeFile(
            delays.path() / std::to_string(run), std::to_string(1050 + run * 2450 / (runs - 1)));
    }
    // Six digits that no other message has.
    const auto codeOf = [](std::size_t run, int round) {
        return std::to_string(100000 + static_cast<int>(run) * 1000 + round);
    };
    for (int round = 0; round < rounds; ++round) {
        const std::string kind = round % 3 == 2 ? "body " : "text ";
        for (std::size_t run = 0; run < runs; ++run) {
            sessions[run]->awaitOpenThrottle();
            if (commits == Commits::rightBehindACut) {
                sessions[run]->writer().writeLine("truncate");
            }
            sessions[run]->writer().writeLine(kind + "Your code is " + codeOf(run, round));
        }
        for (std::size_t run = 0; run < runs; ++run) {
            if (commits == Commits::rightBehindACut) {
                EXPECT_EQ(sessions[run]->writer().readLine(), "ok");
            }
            EXPECT_TRUE(sessions[run]->writer().readLine().value_or("").starts_with("committed"));
            const auto lines = sessions[run]->readReaction();
            ASSERT_FALSE(lines.empty()) << "run " << run << ", round " << round;
            EXPECT_EQ(lines.back(), ProgramSession::reactionPrefix + codeOf(run, round))
                << "run " << run << ", round " << round;
        }
    }
}

/// Beside three busy loops.
class DeliveryUnderLoad : public testing::TestWithParam<Commits>
{
protected:
    DeliveryUnderLoad()
    {
        for (int number = 0; number < 3; ++number) {
            spinning.emplace_back([this] {
                while (!over) {
                }
            });
        }
    }
    ~DeliveryUnderLoad() override { over = true; }

private:
    std::atomic<bool> over = false;
    std::vector<JoiningThread> spinning;
};

INSTANTIATE_TEST_SUITE_P(
    Commits,
    DeliveryUnderLoad,
    testing::Values(Commits::plain, Commits::onASlowDisk, Commits::rightBehindACut));

TEST_P(DeliveryUnderLoad, MissesNoneOf150Messages)
{
    deliverAndExpectAll(GetParam());
}

} // namespace
} // namespace orlimo
