#include "platform/posix/CommitGrowth.h"

#include "tests/platform/ForeignLock.h"
#include "tests/support/HandClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// The growth of a log beside a shared index, on a clock that the test moves.
class CommitGrowthTest : public testing::Test
{
protected:
    CommitGrowthTest() { writeFile(index, "an index"); }

    void hold() { lock.emplace(index, 120); }
    void letGo() { lock.reset(); }
    void note() { growth.note(clock.now()); }
    [[nodiscard]] bool settle() { return growth.settle(clock.now()); }

    TemporaryFolder folder;
    std::filesystem::path index = folder.path() / "store-shm";
    std::optional<ForeignLock> lock;
    HandClock clock;
    int comparisons = 0;
    std::function<bool()> comparison = [] { return false; };
    CommitGrowth growth{
        folder.path() / "store-wal",
        [this] {
            ++comparisons;
            return comparison();
        },
        clock.function()};
};

TEST_F(CommitGrowthTest, NothingIsDeliveredWhenNothingGrew)
{
    EXPECT_FALSE(growth.isWaiting());
    EXPECT_FALSE(settle());
    EXPECT_EQ(comparisons, 0);
}

TEST_F(CommitGrowthTest, IsDeliveredOnceWhenNobodyWrites)
{
    note();
    EXPECT_TRUE(growth.isWaiting());
    EXPECT_TRUE(settle());
    EXPECT_FALSE(growth.isWaiting());
    EXPECT_FALSE(settle());
}

TEST_F(CommitGrowthTest, WaitsForTheWriter)
{
    hold();
    note();
    EXPECT_FALSE(settle());
    clock.advance(999ms);
    EXPECT_FALSE(settle());
    EXPECT_TRUE(growth.isWaiting());
    letGo();
    EXPECT_TRUE(settle());
    EXPECT_FALSE(growth.isWaiting());
}

TEST_F(CommitGrowthTest, WaitsForASecondAtTheMost)
{
    hold();
    note();
    clock.advance(1s - 1ns);
    EXPECT_FALSE(settle());
    clock.advance(1ns);
    EXPECT_TRUE(settle());
    EXPECT_FALSE(growth.isWaiting());
}

TEST_F(CommitGrowthTest, CountsTheSecondFromTheFirstGrowth)
{
    hold();
    note();
    clock.advance(600ms);
    note();
    clock.advance(400ms);
    EXPECT_TRUE(settle());
}

TEST_F(CommitGrowthTest, CountsTheSecondAnewForGrowthThatComesLater)
{
    hold();
    note();
    clock.advance(1s);
    EXPECT_TRUE(settle());
    clock.advance(1h);
    note();
    EXPECT_FALSE(settle());
    clock.advance(1s);
    EXPECT_TRUE(settle());
}

TEST_F(CommitGrowthTest, AsksAgainAfterPausesThatGrowByAnEighth)
{
    hold();
    note();
    EXPECT_EQ(growth.pause(), 100us);
    clock.advance(800us);
    EXPECT_EQ(growth.pause(), 100us);
    clock.advance(800us);
    EXPECT_EQ(growth.pause(), 200us);
    clock.advance(38400us);
    EXPECT_EQ(growth.pause(), 5ms);
    clock.advance(900ms);
    EXPECT_EQ(growth.pause(), 5ms);
}

TEST_F(CommitGrowthTest, TheLastFramesOfTheCommitBelongToIt)
{
    comparison = [] { return true; };
    note();
    EXPECT_TRUE(settle());
    EXPECT_EQ(comparisons, 1);
    EXPECT_FALSE(growth.isWaiting());
}

TEST_F(CommitGrowthTest, TheFirstFramesOfTheNextCommitWaitForItsWriter)
{
    // Between the look at the lock and that at the size.
    comparison = [this] {
        clock.advance(10ms);
        hold();
        return true;
    };
    note();
    EXPECT_TRUE(settle());
    EXPECT_TRUE(growth.isWaiting());
    EXPECT_FALSE(settle());
    EXPECT_EQ(growth.pause(), 100us) << "its time begins with its own first frame";
    comparison = [] { return false; };
    letGo();
    EXPECT_TRUE(settle());
    EXPECT_FALSE(growth.isWaiting());
}

TEST_F(CommitGrowthTest, AWriterWhoHasWrittenNothingYetIsNotWaitedFor)
{
    comparison = [this] {
        hold();
        return false;
    };
    note();
    EXPECT_TRUE(settle());
    EXPECT_FALSE(growth.isWaiting());
}

TEST_F(CommitGrowthTest, OfAFileThatIsNoLogNeverWaits)
{
    hold();
    CommitGrowth plain(
        folder.path() / "store", [] { return false; }, clock.function());
    plain.note(clock.now());
    EXPECT_TRUE(plain.settle(clock.now()));
}

} // namespace
} // namespace orlimo
