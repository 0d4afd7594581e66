#include "platform/ApplicationInstance.h"
#include "platform/UptimeClock.h"
#include "tests/platform/ForeignLock.h"
#include "tests/platform/macos/standins/AppleEvents.h"
#include "tests/platform/macos/standins/RunningApplicationsScript.h"
#include "tests/platform/macos/standins/UserCacheFolder.h"
#include "tests/support/Await.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#import <AppKit/AppKit.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

/// Stands for the application's own handler of reopen events, which it sets before it says that it
/// will finish launching.
@interface OrlimoToolkitHandler : NSObject {
@public
    int calls;
}
- (void)handleReopen:(NSAppleEventDescriptor*)event reply:(NSAppleEventDescriptor*)reply;
@end

@implementation OrlimoToolkitHandler

- (void)handleReopen:(NSAppleEventDescriptor*)event reply:(NSAppleEventDescriptor*)reply
{
    static_cast<void>(event);
    static_cast<void>(reply);
    ++calls;
}

@end

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using Claim = ApplicationInstance::Claim;
using Opening = RunningApplicationsScript::Opening;
using Application = RunningApplicationsScript::Application;
using Completion = RunningApplicationsScript::Completion;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* otherBundle = "/Applications/Orlimo.app";

/// A program in a bundle, in a session of the test's.
class RunningInstance : public testing::Test
{
protected:
    RunningInstance()
    {
        userCacheFolder() = folder.path().string();
        script.ownBundleIdentifier = "app.orlimo.Orlimo";
        script.applicationIn = [this](pid_t process) {
            asked.push_back(process);
            return std::optional<Application>({.bundlePath = otherBundle});
        };
        script.open = [this](const Opening& opening, const Completion& completion) {
            openings.push_back(opening);
            completion(asked.back());
        };
    }

    ~RunningInstance() override
    {
        script = {};
        userCacheFolder().reset();
    }

    [[nodiscard]] static Claim claimOfAnotherStart(bool launchedAtLogin = false)
    {
        return ApplicationInstance::create(launchedAtLogin)->claim();
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "app.orlimo.Orlimo.instance";
    RunningApplicationsScript& script = runningApplicationsScript();
    std::vector<pid_t> asked;
    std::vector<Opening> openings;
};

TEST_F(RunningInstance, IsTheFirstWhereNoOtherRuns)
{
    const auto instance = ApplicationInstance::create(false);
    EXPECT_EQ(instance->claim(), Claim::first);
    EXPECT_TRUE(isLockedSeenFromElsewhere(file, 0, 0));
    EXPECT_THAT(asked, IsEmpty());
    EXPECT_THAT(openings, IsEmpty());
}

TEST_F(RunningInstance, GivesTheClaimUpWithTheObject)
{
    {
        const auto instance = ApplicationInstance::create(false);
        ASSERT_EQ(instance->claim(), Claim::first);
    }
    EXPECT_FALSE(isLockedSeenFromElsewhere(file, 0, 0));
}

TEST_F(RunningInstance, IsAloneOutsideABundle)
{
    script.ownBundleIdentifier.reset();
    const ForeignLock other((writeFile(file, ""), file), 0);
    EXPECT_EQ(claimOfAnotherStart(), Claim::alone);
    EXPECT_THAT(openings, IsEmpty());
}

TEST_F(RunningInstance, IsAloneWhereTheClaimCannotBeKept)
{
    userCacheFolder().reset();
    EXPECT_EQ(claimOfAnotherStart(), Claim::alone);
    userCacheFolder() = std::string(100'000, 'x');
    EXPECT_EQ(claimOfAnotherStart(), Claim::alone);
    userCacheFolder() = (folder.path() / "missing").string();
    EXPECT_EQ(claimOfAnotherStart(), Claim::alone);
}

TEST_F(RunningInstance, FindsTheFolderWithOrWithoutASlashAtItsEnd)
{
    userCacheFolder() = folder.path().string() + "/";
    const auto instance = ApplicationInstance::create(false);
    EXPECT_TRUE(isLockedSeenFromElsewhere(file, 0, 0));
}

TEST_F(RunningInstance, IsTheMainThreadsOwn)
{
    expectFatalStop(
        [] { std::thread([] { (void)ApplicationInstance::create(false); }).join(); },
        {},
        {.file = "platform/macos/RunningInstance.mm", .reason = "called off the main thread"});
}

/// With another program that holds the claim.
class SecondInstance : public RunningInstance
{
protected:
    SecondInstance()
    {
        writeFile(file, "");
        other.emplace(file, 0);
    }

    std::optional<ForeignLock> other;
};

TEST_F(SecondInstance, HasTheSystemOpenTheOther)
{
    EXPECT_EQ(claimOfAnotherStart(), Claim::activatedOther);
    EXPECT_THAT(asked, ElementsAre(other->processId()));
    EXPECT_THAT(openings, ElementsAre(Opening{otherBundle, false, false}));
}

TEST_F(SecondInstance, AsksForNothingAtLogin)
{
    EXPECT_EQ(claimOfAnotherStart(true), Claim::activatedOther);
    EXPECT_THAT(asked, IsEmpty());
    EXPECT_THAT(openings, IsEmpty());
}

TEST_F(SecondInstance, TakesAnAnswerFromAnotherThread)
{
    std::thread answering;
    script.open = [&](const Opening&, const Completion& completion) {
        answering = std::thread([completion, process = asked.back()] {
            std::this_thread::sleep_for(30ms);
            completion(process);
        });
    };
    EXPECT_EQ(claimOfAnotherStart(), Claim::activatedOther);
    answering.join();
}

TEST_F(SecondInstance, GivesUpInLessThanTwoSecondsWhereNoAnswerComes)
{
    Completion late;
    script.open = [&](const Opening& opening, const Completion& completion) {
        openings.push_back(opening);
        late = completion;
    };
    const Uptime begin = currentUptime();
    EXPECT_EQ(claimOfAnotherStart(), Claim::otherDoesNotAnswer);
    EXPECT_GE(currentUptime() - begin, 1s);
    EXPECT_EQ(openings.size(), 1U);
    // Nobody waits for it any more, which harms nobody.
    std::thread([&late] { late(1); }).join();
}

TEST_F(SecondInstance, TriesAgainWhileTheSystemRefuses)
{
    script.open = [this](const Opening& opening, const Completion& completion) {
        openings.push_back(opening);
        completion(openings.size() < 3 ? std::nullopt : std::optional(asked.back()));
    };
    EXPECT_EQ(claimOfAnotherStart(), Claim::activatedOther);
    EXPECT_EQ(openings.size(), 3U);
}

TEST_F(SecondInstance, GivesUpWhereTheSystemRefusesToTheEnd)
{
    script.open = [](const Opening&, const Completion& completion) { completion(std::nullopt); };
    EXPECT_EQ(claimOfAnotherStart(), Claim::otherDoesNotAnswer);
}

TEST_F(SecondInstance, IsNotTheOneThatWasToBeOpened)
{
    script.open = [](const Opening&, const Completion& completion) { completion(::getpid()); };
    EXPECT_EQ(claimOfAnotherStart(), Claim::otherDoesNotAnswer);
}

TEST_F(SecondInstance, WaitsForAnotherThatTheSystemDoesNotKnowYet)
{
    int looks = 0;
    script.applicationIn = [&](pid_t process) -> std::optional<Application> {
        asked.push_back(process);
        switch (++looks) {
        case 1:
            return std::nullopt;
        case 2:
            return Application{.bundlePath = std::nullopt};
        case 3:
            return Application{.bundlePath = otherBundle, .isTerminated = true};
        default:
            return Application{.bundlePath = otherBundle};
        }
    };
    EXPECT_EQ(claimOfAnotherStart(), Claim::activatedOther);
    EXPECT_EQ(looks, 4);
    EXPECT_EQ(openings.size(), 1U);
}

TEST_F(SecondInstance, GivesUpOnAnotherThatTheSystemNeverKnows)
{
    script.applicationIn = [](pid_t) { return std::nullopt; };
    EXPECT_EQ(claimOfAnotherStart(), Claim::otherDoesNotAnswer);
    EXPECT_THAT(openings, IsEmpty());
}

TEST_F(SecondInstance, TakesThePlaceOfOneThatEnds)
{
    script.applicationIn = [this](pid_t) {
        other.reset();
        return std::nullopt;
    };
    EXPECT_EQ(claimOfAnotherStart(), Claim::first);
}

TEST_F(SecondInstance, TakesThePlaceOfOneThatEndsInsteadOfAnswering)
{
    script.open = [this](const Opening&, const Completion&) { other.reset(); };
    EXPECT_EQ(claimOfAnotherStart(), Claim::first);
}

/// Starts of the program at the same moment, each a process.
class SimultaneousStarts : public RunningInstance
{
protected:
    static constexpr int number = 8;

    /// The claims, the first's among them.
    [[nodiscard]] static std::vector<Claim> claims()
    {
        std::array<int, 2> start{};
        std::array<int, 2> answers{};
        std::array<int, 2> end{};
        EXPECT_EQ(::pipe2(start.data(), O_CLOEXEC), 0);
        EXPECT_EQ(::pipe2(answers.data(), O_CLOEXEC), 0);
        EXPECT_EQ(::pipe2(end.data(), O_CLOEXEC), 0);
        std::vector<pid_t> processes;
        for (int process = 0; process < number; ++process) {
            processes.push_back(::fork());
            if (processes.back() == 0) {
                ::close(start[1]);
                ::close(end[1]);
                claimBetween(start[0], answers[1], end[0]);
            }
        }
        ::close(start[1]);
        std::vector<Claim> claims;
        for (int process = 0; process < number; ++process) {
            Claim claim{};
            EXPECT_EQ(::read(answers[0], &claim, sizeof claim), ssize_t{sizeof claim});
            claims.push_back(claim);
        }
        ::close(end[1]);
        for (const pid_t process : processes) {
            EXPECT_EQ(::waitpid(process, nullptr, 0), process);
        }
        for (const int descriptor : {start[0], answers[0], answers[1], end[0]}) {
            ::close(descriptor);
        }
        return claims;
    }

private:
    /// The process: starts when `start` ends, says what it is, and stays until `end` ends.
    [[noreturn]] static void claimBetween(int start, int answers, int end) noexcept
    {
        char nothing = '\0';
        (void)!::read(start, &nothing, 1);
        const auto instance = ApplicationInstance::create(false);
        const Claim claim = instance->claim();
        (void)!::write(answers, &claim, sizeof claim);
        (void)!::read(end, &nothing, 1);
        ::_exit(0);
    }
};

TEST_F(SimultaneousStarts, AreOneThatStaysAndOthersThatAskIt)
{
    for (int round = 0; round < 10; ++round) {
        auto all = claims();
        std::sort(all.begin(), all.end());
        ASSERT_EQ(all.size(), std::size_t{number});
        EXPECT_EQ(all.front(), Claim::first);
        all.erase(all.begin());
        EXPECT_THAT(all, Each(Claim::activatedOther));
    }
}

/// The program that runs, asked to show itself.
class ReopenedInstance : public RunningInstance
{
protected:
    ReopenedInstance() { toolkitHandler = [[OrlimoToolkitHandler alloc] init]; }

    ~ReopenedInstance() override
    {
        instance.reset();
        [[NSAppleEventManager sharedAppleEventManager]
            removeEventHandlerForEventClass:kCoreEventClass
                                 andEventID:kAEReopenApplication];
        [toolkitHandler release];
    }

    /// What the application does when its event loop begins.
    void finishLaunching()
    {
        [[NSAppleEventManager sharedAppleEventManager] setEventHandler:toolkitHandler
                                                           andSelector:@selector(handleReopen:
                                                                                        reply:)
                                                         forEventClass:kCoreEventClass
                                                            andEventID:kAEReopenApplication];
        [[NSNotificationCenter defaultCenter]
            postNotificationName:NSApplicationWillFinishLaunchingNotification
                          object:nil];
    }

    [[nodiscard]] static bool reopen()
    {
        return deliverAppleEvent(kCoreEventClass, kAEReopenApplication);
    }

    void serve()
    {
        instance->onActivation([this] { ++openedTimes; });
    }

    OrlimoToolkitHandler* toolkitHandler = nil;
    std::unique_ptr<ApplicationInstance> instance = ApplicationInstance::create(false);
    int openedTimes = 0;
};

TEST_F(ReopenedInstance, OpensInTheEventLoop)
{
    finishLaunching();
    serve();
    EXPECT_EQ(openedTimes, 0);
    ASSERT_TRUE(reopen());
    EXPECT_EQ(openedTimes, 0) << "not while the event is handled";
    EXPECT_TRUE(await([this] { return openedTimes > 0; }));
    ASSERT_TRUE(reopen());
    EXPECT_TRUE(await([this] { return openedTimes > 1; }));
    EXPECT_EQ(openedTimes, 2);
    EXPECT_EQ(toolkitHandler->calls, 0);
}

TEST_F(ReopenedInstance, OpensOnceForWhatIsAskedAtTheSameTime)
{
    finishLaunching();
    serve();
    ASSERT_TRUE(reopen());
    ASSERT_TRUE(reopen());
    EXPECT_TRUE(await([this] { return openedTimes > 0; }));
    runEventLoop(50ms);
    EXPECT_EQ(openedTimes, 1);
}

TEST_F(ReopenedInstance, KeepsWhatWasAskedBeforeAndDoesItWithinTheCall)
{
    finishLaunching();
    ASSERT_TRUE(reopen());
    ASSERT_TRUE(reopen());
    runEventLoop(50ms);
    serve();
    EXPECT_EQ(openedTimes, 1);
    runEventLoop(50ms);
    EXPECT_EQ(openedTimes, 1);
    EXPECT_EQ(toolkitHandler->calls, 0);
}

TEST_F(ReopenedInstance, KeepsWhatWasAskedRightBeforeTheCall)
{
    finishLaunching();
    ASSERT_TRUE(reopen());
    serve();
    EXPECT_EQ(openedTimes, 1);
    runEventLoop(50ms);
    EXPECT_EQ(openedTimes, 1);
}

TEST_F(ReopenedInstance, TakesTheEventsOverFromAnApplicationThatHasLaunchedUnseen)
{
    [[NSAppleEventManager sharedAppleEventManager] setEventHandler:toolkitHandler
                                                       andSelector:@selector(handleReopen:reply:)
                                                     forEventClass:kCoreEventClass
                                                        andEventID:kAEReopenApplication];
    ASSERT_TRUE(reopen());
    EXPECT_EQ(toolkitHandler->calls, 1);
    serve();
    ASSERT_TRUE(reopen());
    EXPECT_EQ(toolkitHandler->calls, 1);
    EXPECT_TRUE(await([this] { return openedTimes > 0; }));
}

TEST_F(ReopenedInstance, LeavesNoHandlerBehind)
{
    finishLaunching();
    serve();
    instance.reset();
    EXPECT_FALSE(reopen());
    [[NSNotificationCenter defaultCenter]
        postNotificationName:NSApplicationWillFinishLaunchingNotification
                      object:nil];
    EXPECT_FALSE(reopen());
}

TEST_F(ReopenedInstance, OpensNothingOnceItIsGone)
{
    finishLaunching();
    serve();
    ASSERT_TRUE(reopen());
    instance.reset();
    runEventLoop(50ms);
    EXPECT_EQ(openedTimes, 0);
}

TEST_F(ReopenedInstance, ServesOutsideABundleToo)
{
    instance.reset();
    script.ownBundleIdentifier.reset();
    instance = ApplicationInstance::create(false);
    ASSERT_EQ(instance->claim(), Claim::alone);
    finishLaunching();
    serve();
    ASSERT_TRUE(reopen());
    EXPECT_TRUE(await([this] { return openedTimes > 0; }));
}

TEST_F(SecondInstance, LeavesTheEventsToWhoeverHandlesThem)
{
    const auto instance = ApplicationInstance::create(false);
    ASSERT_EQ(instance->claim(), Claim::activatedOther);
    [[NSNotificationCenter defaultCenter]
        postNotificationName:NSApplicationWillFinishLaunchingNotification
                      object:nil];
    EXPECT_FALSE(deliverAppleEvent(kCoreEventClass, kAEReopenApplication));
}

} // namespace
} // namespace orlimo
