#include "tests/app/ProgramSession.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace orlimo {
namespace {

/// Processor time taken away by others, for as long as the object lives.
class Load
{
public:
    explicit Load(int threads)
    {
        for (int number = 0; number < threads; ++number) {
            spinning.emplace_back([this] {
                while (!over) {
                }
            });
        }
    }
    Load(const Load&) = delete;
    Load& operator=(const Load&) = delete;
    ~Load()
    {
        over = true;
        for (std::thread& thread : spinning) {
            thread.join();
        }
    }

private:
    std::atomic<bool> over = false;
    std::vector<std::thread> spinning;
};

/// A code of six digits that no other message of the run has.
std::string codeOf(std::size_t run, int round)
{
    return std::to_string(100000 + static_cast<int>(run) * 1000 + round);
}

/// Delivers 150 messages, in ten runs beside each other, to ten programs. Each must be there before
/// the next, and it must be the newest one: a reader that came too early would copy the code
/// before.
void deliverAndExpectAll()
{
    constexpr std::size_t runs = 10;
    constexpr int rounds = 15;
    std::vector<std::unique_ptr<ProgramSession>> sessions;
    for (std::size_t run = 0; run < runs; ++run) {
        ProgramSession::Settings settings;
        settings.synchronous = run % 2 == 0 ? "FULL" : "NORMAL";
        sessions.push_back(std::make_unique<ProgramSession>(settings));
        sessions.back()->start();
    }
    int captured = 0;
    for (int round = 0; round < rounds; ++round) {
        const std::string kind = round % 3 == 2 ? "body " : "text ";
        for (std::size_t run = 0; run < runs; ++run) {
            sessions[run]->awaitOpenThrottle();
            sessions[run]->deliver(kind + "Your code is " + codeOf(run, round));
        }
        for (std::size_t run = 0; run < runs; ++run) {
            const auto lines = sessions[run]->readReaction();
            ASSERT_FALSE(lines.empty());
            EXPECT_EQ(lines.back(), ProgramSession::reactionPrefix + codeOf(run, round))
                << "run " << run << ", round " << round;
            captured += lines.back() == ProgramSession::reactionPrefix + codeOf(run, round) ? 1 : 0;
        }
    }
    EXPECT_EQ(captured, static_cast<int>(runs) * rounds);
}

TEST(Delivery, NoneOf150MessagesIsMissedOrStale)
{
    deliverAndExpectAll();
}

TEST(Delivery, NoneOf150MessagesIsMissedOrStaleUnderLoad)
{
    const Load load(3);
    deliverAndExpectAll();
}

} // namespace
} // namespace orlimo
