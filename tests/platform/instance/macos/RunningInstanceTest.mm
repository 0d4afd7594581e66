#include "platform/instance/ApplicationInstance.h"
#include "platform/threads/UptimeClock.h"
#include "tests/platform/files/ForeignLock.h"
#include "tests/platform/macos/fakes/FakeObject.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#import <AppKit/AppKit.h>
#include <Block.h>
#include <unistd.h>

using Completion = void (^)(NSRunningApplication*, NSError*);

namespace orlimo {
namespace {

/// The fake system's handling of a request to open an application.
std::function<void(Completion)> open; // NOLINT(cert-err58-cpp): made before anything runs

} // namespace
} // namespace orlimo

@implementation OrlimoFakeObject (Opening)

- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(Completion)completionHandler
{
    self->fake->messages.emplace_back([[applicationURL path] UTF8String]);
    orlimo::open(completionHandler);
}

@end

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using Claim = ApplicationInstance::Claim;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A program in a bundle.
class RunningInstanceTest : public testing::Test
{
protected:
    RunningInstanceTest()
    {
        setCacheFolder(folder.path().string());
        bundle.returns<id>("bundleIdentifier", @"app.orlimo.Orlimo");
        events.records("setEventHandler:andSelector:forEventClass:andEventID:", handler);
        events.responds("removeEventHandlerForEventClass:andEventID:", [this](NSInvocation*) {
            handler = nil;
        });
    }

    ~RunningInstanceTest() override { FakeObject::resetAll(); }

    void setCacheFolder(const std::optional<std::string>& path)
    {
        cacheFolder.emplace("ORLIMO_USER_CACHE_FOLDER", path);
    }

    [[nodiscard]] static Claim claimOfAnotherStart(bool launchedAtLogin = false)
    {
        return ApplicationInstance::create(launchedAtLogin)->claim();
    }

    static void finishLaunching()
    {
        [[NSNotificationCenter defaultCenter]
            postNotificationName:NSApplicationWillFinishLaunchingNotification
                          object:nil];
    }

    TemporaryFolder folder;
    std::optional<EnvironmentChange> cacheFolder;
    std::filesystem::path file = folder.path() / "app.orlimo.Orlimo.instance";
    FakeObject& bundle = FakeObject::named("NSBundle");
    FakeObject& events = FakeObject::named("NSAppleEventManager");
    /// Of the reopen event.
    id handler = nil;
};

TEST_F(RunningInstanceTest, FirstInstanceHoldsLockUnlessOutsideBundleOrWithoutFile)
{
    EXPECT_EQ(claimOfAnotherStart(), Claim::first);
    {
        const auto instance = ApplicationInstance::create(false);
        EXPECT_EQ(instance->claim(), Claim::first);
        EXPECT_TRUE(isLockedForOtherProcesses(file, 0, 0));
    }
    for (const auto& path :
         {std::optional<std::string>(),
          std::optional(std::string(100'000, 'x')),
          std::optional((folder.path() / "missing").string())})
    {
        setCacheFolder(path);
        EXPECT_EQ(claimOfAnotherStart(), Claim::unmanaged) << path.value_or("none").size();
    }
    setCacheFolder(folder.path().string());
    bundle.returns<id>("bundleIdentifier", nil);
    const ForeignLock other(file, 0);
    EXPECT_EQ(claimOfAnotherStart(), Claim::unmanaged);
}

/// With another program that holds the claim, and that the system knows and can open.
class SecondInstanceTest : public RunningInstanceTest
{
protected:
    SecondInstanceTest()
    {
        writeFile(file, "");
        other.emplace(file, 0);
        known.responds("applicationInProcess:", [this](NSInvocation* invocation) {
            EXPECT_EQ(FakeObject::argument<pid_t>(invocation, 0), other->processId());
            id found = application.object();
            [invocation setReturnValue:&found];
        });
        application.returns<id>("bundleURL", [NSURL fileURLWithPath:@"/Applications/Orlimo.app"]);
        open = [this](Completion completion) { completion(application.object(), nil); };
    }

    FakeObject& application = FakeObject::named("application");
    FakeObject& known = FakeObject::named("NSRunningApplication");
    FakeObject& workspace = FakeObject::named("NSWorkspace");
    std::optional<ForeignLock> other;
};

TEST_F(SecondInstanceTest, SystemActivatesOther)
{
    EXPECT_EQ(claimOfAnotherStart(true), Claim::activatedOther);
    EXPECT_THAT(known.messages, IsEmpty()) << "nothing is asked at login";
    BOOL opensAnother = YES;
    FakeObject::named("NSWorkspaceOpenConfiguration")
        .records("setCreatesNewApplicationInstance:", opensAnother);
    EXPECT_EQ(claimOfAnotherStart(), Claim::activatedOther);
    EXPECT_THAT(workspace.messages, ElementsAre("/Applications/Orlimo.app"));
    EXPECT_FALSE(opensAnother);
    finishLaunching();
    EXPECT_EQ(handler, nil) << "its events are left to others";
}

TEST_F(SecondInstanceTest, MissingResponseTimesOut)
{
    Completion late = nil;
    open = [&](Completion completion) {
        // The system means this start at first, and replies to nothing after that.
        if (workspace.messages.size() == 1) {
            application.returns("processIdentifier", ::getpid());
            completion(application.object(), nil);
        } else {
            late = Block_copy(completion);
        }
    };
    const Uptime begin = currentUptime();
    EXPECT_EQ(claimOfAnotherStart(), Claim::otherUnresponsive);
    EXPECT_GE(currentUptime() - begin, 1s);
    EXPECT_THAT(workspace.messages, SizeIs(2));
    // A response after the timeout is ignored.
    late(nil, nil);
    Block_release(late);
}

TEST_F(SecondInstanceTest, OtherThatIsNotReadyIsAwaited)
{
    int looks = 0;
    known.responds("applicationInProcess:", [&](NSInvocation* invocation) {
        id found = ++looks == 1 ? nil : application.object();
        application.returns<BOOL>("isTerminated", looks == 2 ? YES : NO);
        application.returns<id>("bundleURL", looks == 3 ? nil : [NSURL fileURLWithPath:@"/"]);
        [invocation setReturnValue:&found];
    });
    open = [this](Completion completion) {
        NSError* const error = [NSError errorWithDomain:NSCocoaErrorDomain code:1 userInfo:nil];
        completion(application.object(), workspace.messages.size() == 1 ? error : nil);
    };
    EXPECT_EQ(claimOfAnotherStart(), Claim::activatedOther);
    EXPECT_EQ(looks, 5);
    EXPECT_THAT(workspace.messages, SizeIs(2)) << "the first was refused";
}

TEST_F(SecondInstanceTest, EndedInstanceIsReplaced)
{
    open = [this](Completion) { other.reset(); };
    EXPECT_EQ(claimOfAnotherStart(), Claim::first);
}

TEST_F(RunningInstanceTest, SimultaneousReopenEventsOpenOnceAndNoneIsServedAtTheEnd)
{
    int openedTimes = 0;
    auto instance = ApplicationInstance::create(false);
    const auto reopen = [this] {
        [handler performSelector:@selector(handleReopen:withReplyEvent:)
                      withObject:nil
                      withObject:nil];
    };
    EXPECT_EQ(handler, nil) << "the application sets its own handler before launching finishes";
    finishLaunching();
    reopen();
    runEventLoop(50ms);
    instance->onActivation([&openedTimes] { ++openedTimes; });
    EXPECT_EQ(openedTimes, 1) << "of before the registration";
    reopen();
    reopen();
    EXPECT_EQ(openedTimes, 1) << "not while the event is handled";
    EXPECT_TRUE(await([&openedTimes] { return openedTimes > 1; }));
    runEventLoop(50ms);
    EXPECT_EQ(openedTimes, 2);
    reopen();
    instance.reset();
    EXPECT_EQ(handler, nil);
    runEventLoop(50ms);
    EXPECT_EQ(openedTimes, 2) << "nothing of it is left";

    // Of an application that has launched already.
    instance = ApplicationInstance::create(false);
    EXPECT_EQ(handler, nil);
    instance->onActivation([] {});
    EXPECT_NE(handler, nil);
}

} // namespace
} // namespace orlimo
